#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tessik {

/// An event that several may listen to; they are called in the order in which they connected. Main thread only.
///
/// Listeners may connect and disconnect during a call. The signal must outlive the call.
template <typename... Args>
class Signal {
    struct Slot {
        std::function<void(Args...)> listener;
        bool isConnected = true;
    };

public:
    /// The listener is connected as long as this object lives.
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
    mutable int _depth = 0; // a listener may trigger it again
};

} // namespace tessik
