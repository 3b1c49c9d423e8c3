#include "zorvex_api/Exception.h"

namespace zorvex_api
{

struct ExceptionImpl : Allocator
{
    int code;
    String message;
};

Exception::Exception(int code) : Exception(code, String()) {}
Exception::Exception(int code, const String& message) : m_impl(new ExceptionImpl{{}, code, message})
{
}
Exception::Exception(const Exception& other) : Allocator(), m_impl(new ExceptionImpl(*other.m_impl))
{
}
Exception& Exception::operator=(const Exception& other)
{
    *m_impl = *other.m_impl;
    return *this;
}
Exception::~Exception()
{
    delete m_impl;
}

int Exception::GetCode() const
{
    return m_impl->code;
}
void Exception::SetCode(int code)
{
    m_impl->code = code;
}
const String& Exception::GetMessage() const
{
    return m_impl->message;
}
void Exception::SetMessage(const String& message)
{
    m_impl->message = message;
}

}  // namespace zorvex_api
