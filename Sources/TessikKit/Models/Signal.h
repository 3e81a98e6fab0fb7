#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tessik {

/// Something that happens, told to whoever listens, first come first served. Main thread only.
///
/// A listener may connect and disconnect while it is told; the signal has to outlive that.
template <typename... Args>
class Signal {
    struct Slot {
        std::function<void(Args...)> listener;
        bool isConnected = true;
    };

public:
    /// Ends with this object.
    class [[nodiscard]] Connection {
    public:
        Connection() = default;
        explicit Connection(std::shared_ptr<Slot> slot) : _slot(std::move(slot)) {}
        Connection(Connection&& other) noexcept : _slot(std::move(other._slot)) {}
        Connection& operator=(Connection&& other) noexcept {
            std::swap(_slot, other._slot);
            return *this;
        }
        ~Connection() {
            if (_slot) _slot->isConnected = false;
        }

    private:
        std::shared_ptr<Slot> _slot;
    };

    Connection connect(std::function<void(Args...)> listener) {
        return Connection(_slots.emplace_back(std::make_shared<Slot>(Slot{std::move(listener)})));
    }

    void operator()(Args... args) const {
        for (std::size_t i = 0; i < _slots.size(); ++i)
            if (const std::shared_ptr<Slot> slot = _slots[i]; slot->isConnected) {
                ++_depth;
                slot->listener(args...);
                --_depth;
            }
        if (_depth == 0) std::erase_if(_slots, [](const auto& slot) { return !slot->isConnected; });
    }

private:
    mutable std::vector<std::shared_ptr<Slot>> _slots;
    mutable int _depth = 0; // a listener may have it happen again
};

} // namespace tessik
