#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Configuration.h"
#include "zorvex_api/Export.h"

namespace zorvex_api
{

struct ConfigurationRefImpl;

/// Makes a Configuration the active one of this thread for the length of a scope.
///
/// The entry leaves the stack by identity, and is forgotten when its Configuration dies first.
class ZORVEX_API ConfigurationRef : public Allocator
{
public:
    /// `configuration` isn't owned and may be null. Raises an Exception when the paging service
    /// refuses the configuration.
    explicit ConfigurationRef(Configuration* configuration);
    ~ConfigurationRef();

    ConfigurationRef(const ConfigurationRef&) = delete;
    ConfigurationRef& operator=(const ConfigurationRef&) = delete;

    Configuration* operator->() const;

    /// The innermost active configuration of this thread, or null.
    static Configuration* GetActiveConfiguration();

private:
    ConfigurationRefImpl* m_impl;  // owned
};

}  // namespace zorvex_api
