#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/Result.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

class Adapter;
class Configuration;
class Pointer;

/// A chain of adapters for the length of a scope.
///
/// Members that were made for the chain are deleted at its end; a configured instance is reset by
/// ZORVEX_OP_ADAPTER_RESET, taken out of the chain and kept.
class ZORVEX_API AdapterRef : public Allocator
{
public:
    /// Builds the chain that `pointer` names, on top of `previous`, which may be null, isn't owned
    /// and must outlive the chain. Without success there is no chain and the Result has error 517.
    AdapterRef(const Pointer& pointer, Adapter* previous);
    /// A chain of one adapter of `format` on top of `previous`. Error 517, WARNING,
    /// "Missing (<format>) Adapter." when there is none.
    AdapterRef(const String& format, Adapter* previous);
    /// Instances configured in `options` are used before those of the registry.
    AdapterRef(const Pointer& pointer, Adapter* previous, Configuration* options);
    AdapterRef(const String& format, Adapter* previous, Configuration* options);
    ~AdapterRef();

    AdapterRef(const AdapterRef&) = delete;
    AdapterRef& operator=(const AdapterRef&) = delete;

    /// The top of the chain, or null; it lives as long as this AdapterRef.
    Adapter* GetAdapter() const;
    const Result& GetResult() const;
    /// 1 when there is a chain.
    int IsValid() const;
    Adapter* operator->() const;

private:
    AdapterRef(Adapter* previous, Configuration* options);

    void Build(const Pointer& pointer);
    bool PushFormat(const Pointer& pointer, const String& type, const String& context);
    void Push(Adapter* adapter, const String& context, bool isNew);
    void ReleaseChain();

    Adapter* m_adapter;        // top of the chain; its members are owned as their records tell
    Adapter* m_previous;       // the caller's adapter below the chain, not owned
    Adapter* m_savedNext;      // what stood above m_previous before; put back at the end
    Configuration* m_options;  // not owned
    Result m_result;
};

}  // namespace zorvex_api
