#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

struct ErrorImpl;
class ResultImpl;

/// How grave an `Error` is. The values are fixed.
enum ErrorSeverity
{
    UNSET = 0,
    MESSAGE = 1,
    WARNING = 2,
    ERROR = 3,
    SEVERE = 4,
    FATAL = 5,
    MULTIPLE = 6
};

/// One entry of a `Result`: code, severity, message and a pointer of the application's that the
/// library never looks at. A value: copying copies the record.
class ZORVEX_API Error : public Allocator
{
public:
    /// Code 1, severity ERROR, no message.
    Error();
    explicit Error(int code);
    Error(int code, const String& message);
    Error(int code, ErrorSeverity severity);
    Error(int code, ErrorSeverity severity, const String& message);
    Error(int code, ErrorSeverity severity, const String& message, void* data);
    Error(const Error& other);
    Error& operator=(const Error& other);
    ~Error();

    int GetCode() const;
    void SetCode(int code);
    ErrorSeverity GetSeverity() const;
    void SetSeverity(ErrorSeverity severity);
    const String& GetMessage() const;
    void SetMessage(const String& message);
    /// Appends to the message, with no separator.
    void AddMessage(const String& message);
    void* GetData() const;
    void SetData(void* data);

private:
    ErrorImpl* m_impl;  // owned
};

/// What an operation reports: any number of `Error`s, none for plain success.
///
/// An entry with code 0 is never stored, so a status can go into a Result untested. Entries of
/// severity MESSAGE and WARNING leave the Result `Ok`.
class ZORVEX_API Result : public Allocator
{
public:
    Result() noexcept : m_impl(nullptr) {}
    Result(const Error& error);
    Result(int code);
    Result(int code, const String& message);
    Result(int code, ErrorSeverity severity, const String& message);
    Result(int code, ErrorSeverity severity, const String& message, void* data);
    Result(const Result& other);
    Result(Result&& other) noexcept : m_impl(other.m_impl) { other.m_impl = nullptr; }
    virtual ~Result();

    Result& operator=(const Result& other);
    Result& operator=(Result&& other) noexcept;

    void AddError(const Error& error);
    void AddError(int code, const String& message);
    void AddError(int code, ErrorSeverity severity, const String& message);
    void AddError(int code, ErrorSeverity severity, const String& message, void* data);

    /// 1 if all entries are messages or warnings.
    int Ok() const;
    int HasError() const;
    /// 0 with no entry, the code of the only entry, or 7 with several.
    int GetCode() const;
    /// The messages of all entries, one a line. The reference lives until the next call on this
    /// Result.
    const String& GetMessage() const;
    int NumberOfErrors() const;
    /// An entry, still owned here, or null for an index outside the list.
    Error* GetError(int index) const;
    /// Appends copies of another Result's entries. Merging a Result into itself does nothing.
    void Merge(const Result& other);

private:
    ResultImpl* m_impl;  // owned; null until the first entry
};

}  // namespace zorvex_api
