#pragma once

/// Where saving and the session meet the debug journal.

namespace zorvex_api
{

class Configuration;
class Object;
class Result;
class String;

/// What a journal records.
class Journal
{
public:
    virtual ~Journal() = default;

    /// The application called `Save`; `uri` and `options` are as given.
    virtual void SaveBegin(const Object* object, const String& uri,
                           const Configuration* options) = 0;
    virtual void SaveEnd(const Result& result) = 0;
    /// The session ends.
    virtual void Terminating() = 0;
};

/// The one journal, absent until one is started.
class JournalHooks
{
public:
    static Journal* Get() { return s_journal; }
    /// Not owned.
    static void Set(Journal* journal) { s_journal = journal; }

private:
    static inline Journal* s_journal = nullptr;
};

}  // namespace zorvex_api
