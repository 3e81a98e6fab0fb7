#pragma once

#include <QProperty>

namespace tessik {

/// A value that anybody may read and observe. Main thread only.
template <typename T>
class Observable {
public:
    using Parameter = typename QProperty<T>::parameter_type;

    Observable() = default;
    Q_DISABLE_COPY_MOVE(Observable)

    Parameter value() const { return _property.value(); }
    operator Parameter() const { return value(); }
    /// Runs the handler after each change, as long as what is returned lives. A write of an equal value is none.
    template <typename Handler>
    [[nodiscard]] QPropertyNotifier addNotifier(Handler handler) const {
        return QPropertyNotifier(_property, std::move(handler));
    }

protected:
    explicit Observable(T initial) : _property(std::move(initial)) {}
    ~Observable() = default;

    QProperty<T> _property;
};

/// A value that only `Owner` writes.
template <typename T, typename Owner>
class Published : public Observable<T> {
public:
    Published() = default;
    explicit Published(T initial) : Observable<T>(std::move(initial)) {}

private:
    friend Owner;
    Published& operator=(T value) {
        this->_property = std::move(value);
        return *this;
    }
    /// From now on it follows what the function reads of other observables.
    template <typename Function>
    void follow(Function function) {
        this->_property.setBinding(std::move(function));
    }
};

} // namespace tessik
