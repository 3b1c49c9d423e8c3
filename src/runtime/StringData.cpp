#include "runtime/StringData.h"

#include <cstring>
#include <string>

#include "runtime/MutexLock.h"
#include "runtime/SessionState.h"
#include "runtime/StoredText.h"
#include "runtime/StringPool.h"
#include "runtime/Utf8.h"

namespace zorvex_api
{

namespace
{

internal::StringPool g_pool;  // guarded by the lock of the pool

const void* AcquireBytes(std::string_view bytes)
{
    const MutexLock lock(kMutexStringPool);
    return g_pool.Acquire(bytes);
}

std::string_view BytesOf(TextView text)
{
    return std::string_view(reinterpret_cast<const char*>(text.data()),
                            text.size() * sizeof(char16_t));
}

}  // namespace

const void* StringData::Acquire(const unsigned short* text, int copy)
{
    if (text == nullptr)
    {
        return nullptr;
    }
    const void* const pooled = Acquire(TextView(AsChar16(text)));
    if (copy == 0 && !SessionState::Compression())
    {
        Allocator::deallocate(const_cast<unsigned short*>(text));
    }
    return pooled;
}

const void* StringData::Acquire(TextView text)
{
    if (!SessionState::Compression())
    {
        return AcquireBytes(BytesOf(text));
    }
    constexpr size_t kShort = 256;
    char small[3 * kShort];  // a unit takes at most three bytes
    if (text.size() <= kShort)
    {
        return AcquireBytes({small, static_cast<size_t>(utf8::EncodeStored(text, small) - small)});
    }
    std::string large(utf8::StoredSize(text), '\0');
    utf8::EncodeStored(text, large.data());
    return AcquireBytes(large);
}

const void* StringData::AcquireStored(void* stored)
{
    if (stored == nullptr)
    {
        return nullptr;
    }
    const std::string_view bytes = SessionState::Compression()
                                       ? std::string_view(static_cast<const char*>(stored))
                                       : BytesOf(TextView(static_cast<const char16_t*>(stored)));
    const void* const pooled = AcquireBytes(bytes);
    Allocator::deallocate(stored);
    return pooled;
}

const void* StringData::AddUse(const void* stored)
{
    if (stored != nullptr)
    {
        const MutexLock lock(kMutexStringPool);
        g_pool.AddUse(stored);
    }
    return stored;
}

void StringData::Release(const void* stored)
{
    if (stored != nullptr)
    {
        const MutexLock lock(kMutexStringPool);
        g_pool.Release(stored);
    }
}

size_t StringData::GetOccupied()
{
    const MutexLock lock(kMutexStringPool);
    return g_pool.GetOccupied();
}

Result StringData::Init(int pool, int compress)
{
    const MutexLock lock(kMutexStringPool);
    if (g_pool.Exists() || stored::AnyAlive())
    {
        return Result(2, WARNING,
                      "Failed to change StringData storage settings as pooling already in use");
    }
    SessionState::SetStorage(pool != 0, compress != 0);
    return Result();
}

void StringData::Fini()
{
    const MutexLock lock(kMutexStringPool);
    if (g_pool.Exists() && g_pool.GetOccupied() == 0)
    {
        g_pool.Free();
    }
}

}  // namespace zorvex_api

int StringDataInit(int pool, int compress)
{
    return zorvex_api::StringData::Init(pool, compress).NumberOfErrors() == 0 ? 1 : 0;
}

void StringDataFini()
{
    zorvex_api::StringData::Fini();
}
