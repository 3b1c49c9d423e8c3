#pragma once

namespace zorvex_api
{

/// The flags of the session. They change in `Initialise` and `Terminate` only, which run alone,
/// so reading them needs no lock.
class SessionState
{
public:
    static bool Active() { return s_active; }
    static void SetActive(bool active) { s_active = active; }

    /// Separate documents may be used on separate threads.
    static bool Multithreading() { return s_multithreading; }
    static void SetMultithreading(bool on) { s_multithreading = on; }

    /// Field text is shared between equal values.
    static bool Pooling() { return s_pooling; }
    /// Field text is held as UTF-8.
    static bool Compression() { return s_compression; }
    /// Only `StringData::Init` knows when these may change.
    static void SetStorage(bool pooling, bool compression)
    {
        s_pooling = pooling;
        s_compression = compression;
    }

private:
    static inline bool s_active = false;
    static inline bool s_multithreading = false;
    static inline bool s_pooling = true;
    static inline bool s_compression = true;
};

}  // namespace zorvex_api
