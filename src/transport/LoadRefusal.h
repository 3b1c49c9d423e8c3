#pragma once

namespace zorvex_api::internal
{

/// Notes that a resolver refused to have a reference followed. A load that brings nothing for this
/// reason is no failure.
void NoteRefusal() noexcept;

/// Forgets earlier refusals of this thread for the length of a load.
class RefusalWatch
{
public:
    RefusalWatch();
    ~RefusalWatch();
    RefusalWatch(const RefusalWatch&) = delete;
    RefusalWatch& operator=(const RefusalWatch&) = delete;

    bool WasRefused() const;

private:
    bool m_before;
};

}  // namespace zorvex_api::internal
