#include "zorvex_api/Result.h"

#include <memory>
#include <string>
#include <utility>

#include "runtime/Text.h"
#include "zorvex_api/Array.h"

namespace zorvex_api
{

struct ErrorImpl : Allocator
{
    int code;
    ErrorSeverity severity;
    String message;
    void* data;  // the application's
};

Error::Error() : Error(1) {}
Error::Error(int code) : Error(code, ERROR, String(), nullptr) {}
Error::Error(int code, const String& message) : Error(code, ERROR, message, nullptr) {}
Error::Error(int code, ErrorSeverity severity) : Error(code, severity, String(), nullptr) {}
Error::Error(int code, ErrorSeverity severity, const String& message)
    : Error(code, severity, message, nullptr)
{
}
Error::Error(int code, ErrorSeverity severity, const String& message, void* data)
    : m_impl(new ErrorImpl{{}, code, severity, message, data})
{
}
Error::Error(const Error& other) : Allocator(), m_impl(new ErrorImpl(*other.m_impl)) {}
Error& Error::operator=(const Error& other)
{
    *m_impl = *other.m_impl;
    return *this;
}
Error::~Error()
{
    delete m_impl;
}

int Error::GetCode() const
{
    return m_impl->code;
}
void Error::SetCode(int code)
{
    m_impl->code = code;
}
ErrorSeverity Error::GetSeverity() const
{
    return m_impl->severity;
}
void Error::SetSeverity(ErrorSeverity severity)
{
    m_impl->severity = severity;
}
const String& Error::GetMessage() const
{
    return m_impl->message;
}
void Error::SetMessage(const String& message)
{
    m_impl->message = message;
}
void Error::AddMessage(const String& message)
{
    m_impl->message += message;
}
void* Error::GetData() const
{
    return m_impl->data;
}
void Error::SetData(void* data)
{
    m_impl->data = data;
}

/// Owns its errors.
class ResultImpl : public Array<Error*>
{
public:
    ResultImpl() = default;
    ~ResultImpl() override
    {
        for (Error* error : *this)
        {
            delete error;
        }
    }

    String messages;  // cache of GetMessage
};

Result::Result(const Error& error) : Result()
{
    AddError(error);
}
Result::Result(int code) : Result()
{
    AddError(Error(code));
}
Result::Result(int code, const String& message) : Result()
{
    AddError(code, message);
}
Result::Result(int code, ErrorSeverity severity, const String& message) : Result()
{
    AddError(code, severity, message);
}
Result::Result(int code, ErrorSeverity severity, const String& message, void* data) : Result()
{
    AddError(code, severity, message, data);
}
Result::Result(const Result& other) : Allocator(), m_impl(nullptr)
{
    Merge(other);
}
Result::~Result()
{
    delete m_impl;
}

Result& Result::operator=(const Result& other)
{
    if (this != &other)
    {
        Result copy(other);
        std::swap(m_impl, copy.m_impl);
    }
    return *this;
}

Result& Result::operator=(Result&& other) noexcept
{
    if (this != &other)
    {
        delete m_impl;
        m_impl = std::exchange(other.m_impl, nullptr);
    }
    return *this;
}

void Result::AddError(const Error& error)
{
    if (error.GetCode() == 0)
    {
        return;
    }
    if (m_impl == nullptr)
    {
        m_impl = new ResultImpl;
    }
    std::unique_ptr<Error> copy(new Error(error));
    m_impl->Add(copy.get());
    copy.release();
}

void Result::AddError(int code, const String& message)
{
    AddError(Error(code, message));
}

void Result::AddError(int code, ErrorSeverity severity, const String& message)
{
    AddError(Error(code, severity, message));
}

void Result::AddError(int code, ErrorSeverity severity, const String& message, void* data)
{
    AddError(Error(code, severity, message, data));
}

int Result::Ok() const
{
    if (m_impl != nullptr)
    {
        for (const Error* error : *m_impl)
        {
            if (error->GetSeverity() != MESSAGE && error->GetSeverity() != WARNING)
            {
                return 0;
            }
        }
    }
    return 1;
}

int Result::HasError() const
{
    return Ok() ? 0 : 1;
}

int Result::GetCode() const
{
    const int count = NumberOfErrors();
    if (count == 0)
    {
        return 0;
    }
    return count == 1 ? (*m_impl)[0]->GetCode() : 7;
}

const String& Result::GetMessage() const
{
    if (m_impl == nullptr)
    {
        return String::EmptyString();
    }
    std::u16string text;
    size_t size = 0;
    for (const Error* error : *m_impl)
    {
        size += View(error->GetMessage()).size() + 1;
    }
    text.reserve(size);
    for (int i = 0; i < m_impl->GetSize(); ++i)
    {
        if (i != 0)
        {
            text += u'\n';
        }
        text += View((*m_impl)[i]->GetMessage());
    }
    m_impl->messages = ToString(text);
    return m_impl->messages;
}

int Result::NumberOfErrors() const
{
    return m_impl != nullptr ? m_impl->GetSize() : 0;
}

Error* Result::GetError(int index) const
{
    return index >= 0 && index < NumberOfErrors() ? (*m_impl)[index] : nullptr;
}

void Result::Merge(const Result& other)
{
    if (this == &other || other.m_impl == nullptr)
    {
        return;
    }
    for (const Error* error : *other.m_impl)
    {
        AddError(*error);
    }
}

}  // namespace zorvex_api
