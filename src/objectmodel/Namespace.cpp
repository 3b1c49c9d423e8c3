#include "objectmodel/Namespace.h"

#include <algorithm>
#include <memory>

#include "objectmodel/HookedVector.h"
#include "runtime/MutexLock.h"
#include "runtime/NamespaceUris.h"

namespace zorvex_api
{

/// The records, sorted by URI to be found, and chained in the order in which they were registered,
/// which is the order of every walk. All operations run under mutex 6. The list is freed with
/// its last record, so that nothing is left after a session.
class NamespaceTable
{
public:
    using Records = HookedVector<Namespace*>;

    static Records* s_records;  // null while there are none
    static Namespace* s_first;  // of the chain
    static Namespace* s_last;
    static bool s_main;  // RegisterMain holds its use
    static bool s_legacy;

    static Records::iterator LowerBound(TextView uri)
    {
        return std::lower_bound(s_records->begin(), s_records->end(), uri,
                                [](const Namespace* record, TextView wanted)
                                { return View(record->m_uri) < wanted; });
    }

    static Namespace* Find(TextView uri)
    {
        if (s_records == nullptr)
        {
            return nullptr;
        }
        const auto at = LowerBound(uri);
        return at != s_records->end() && View((*at)->m_uri) == uri ? *at : nullptr;
    }

    static Namespace* Register(TextView uri, TextView prefix, bool isDefault, bool isCurrent,
                               const Namespace* target)
    {
        if (Namespace* known = Find(uri))
        {
            ++known->m_useCount;
            return known;
        }
        if (s_records == nullptr)
        {
            s_records = new Records;
        }
        std::unique_ptr<Namespace> record(new Namespace(uri, prefix, isDefault, isCurrent, target));
        s_records->insert(LowerBound(uri), record.get());
        Namespace* const made = record.release();
        made->m_serial = s_last != nullptr ? s_last->m_serial + 1 : 0;
        made->m_previous = s_last;
        (s_last != nullptr ? s_last->m_next : s_first) = made;
        s_last = made;
        return made;
    }

    static void Release(TextView uri)
    {
        Namespace* record = Find(uri);
        if (record == nullptr || --record->m_useCount > 0)
        {
            return;
        }
        s_records->erase(LowerBound(uri));
        (record->m_previous != nullptr ? record->m_previous->m_next : s_first) = record->m_next;
        (record->m_next != nullptr ? record->m_next->m_previous : s_last) = record->m_previous;
        delete record;
        if (s_records->empty())
        {
            delete s_records;
            s_records = nullptr;
        }
    }
};

NamespaceTable::Records* NamespaceTable::s_records = nullptr;
Namespace* NamespaceTable::s_first = nullptr;
Namespace* NamespaceTable::s_last = nullptr;
bool NamespaceTable::s_main = false;
bool NamespaceTable::s_legacy = false;

Namespace::Namespace(TextView uri, TextView prefix, bool isDefault, bool isCurrent,
                     const Namespace* target)
    : m_target(target),
      m_prefix(ToString(prefix)),
      m_uri(ToString(uri)),
      m_isDefault(isDefault),
      m_isCurrent(isCurrent)
{
}

TextView Namespace::MainUri()
{
    return uris::kMain;
}

const Namespace* Namespace::Next() const
{
    return m_next;
}

const Namespace* Namespace::First()
{
    return NamespaceTable::s_first;
}

int Namespace::Count()
{
    const MutexLock lock(kMutexNamespaces);
    return NamespaceTable::s_records != nullptr
               ? static_cast<int>(NamespaceTable::s_records->size())
               : 0;
}

const Namespace* Namespace::Register(TextView uri, TextView prefix, bool isDefault, bool isCurrent,
                                     const Namespace* target)
{
    const MutexLock lock(kMutexNamespaces);
    return NamespaceTable::Register(uri, prefix, isDefault, isCurrent, target);
}

void Namespace::Release(TextView uri)
{
    const MutexLock lock(kMutexNamespaces);
    NamespaceTable::Release(uri);
}

const Namespace* Namespace::FindByUri(TextView uri)
{
    const MutexLock lock(kMutexNamespaces);
    return NamespaceTable::Find(uri);
}

const Namespace* Namespace::FindByPrefix(TextView prefix)
{
    const MutexLock lock(kMutexNamespaces);
    const Namespace* record = First();
    while (record != nullptr && View(record->Prefix()) != prefix)
    {
        record = record->Next();
    }
    return record;
}

String Namespace::PrefixOf(TextView uri)
{
    const MutexLock lock(kMutexNamespaces);
    const Namespace* record = NamespaceTable::Find(uri);
    return record != nullptr ? record->Prefix() : String();
}

void Namespace::RegisterMain()
{
    const MutexLock lock(kMutexNamespaces);
    if (!NamespaceTable::s_main)
    {
        NamespaceTable::Register(uris::kMain, {}, true, true, nullptr);
        NamespaceTable::s_main = true;
    }
}

void Namespace::RegisterLegacy()
{
    const MutexLock lock(kMutexNamespaces);
    if (NamespaceTable::s_legacy)
    {
        return;
    }
    const Namespace* main = NamespaceTable::Find(uris::kMain);
    for (const uris::LegacyNamespace& legacy : uris::kLegacy)
    {
        NamespaceTable::Register(legacy.uri, legacy.prefix, false, false, main);
    }
    NamespaceTable::Register(uris::kXmlSchemaInstance, u"xsi", false, true, nullptr);
    NamespaceTable::s_legacy = true;
}

void Namespace::ReleaseBuiltIn()
{
    const MutexLock lock(kMutexNamespaces);
    if (NamespaceTable::s_legacy)
    {
        for (const uris::LegacyNamespace& legacy : uris::kLegacy)
        {
            NamespaceTable::Release(legacy.uri);
        }
        NamespaceTable::Release(uris::kXmlSchemaInstance);
        NamespaceTable::s_legacy = false;
    }
    if (NamespaceTable::s_main)
    {
        NamespaceTable::Release(uris::kMain);
        NamespaceTable::s_main = false;
    }
}

}  // namespace zorvex_api
