#pragma once

#include <cstdint>

namespace zorvex_bench
{

/// Numbers that depend on nothing but their key, on every platform.
///
/// Each thing of a document draws from a sequence of its own (seed, kind, index), so that it is the
/// same wherever in the document it is asked for.
class Random
{
public:
    Random(std::uint64_t seed, std::uint64_t kind, std::uint64_t index)
        : m_state(Mix(Mix(Mix(seed) + kind) + index))
    {
    }

    std::uint64_t Next()
    {
        m_state += kStep;
        return Mix(m_state);
    }

    /// From 0 up to, not including, `limit`, which is far below 2^32.
    std::uint32_t Below(std::uint32_t limit)
    {
        return static_cast<std::uint32_t>(((Next() >> 32) * limit) >> 32);
    }

    bool Chance(std::uint32_t percent) { return Below(100) < percent; }

private:
    static constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15u;

    static std::uint64_t Mix(std::uint64_t value)
    {
        value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
        value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
        return value ^ (value >> 31);
    }

    std::uint64_t m_state;
};

}  // namespace zorvex_bench
