#pragma once

#include "zorvex_api/Allocator.h"
#include "zorvex_api/Export.h"
#include "zorvex_api/String.h"

namespace zorvex_api
{

struct ExceptionImpl;

/// What an operation raises that returns a plain value: one code and one message. The codes are
/// those of `Result`.
class ZORVEX_API Exception : public Allocator
{
public:
    explicit Exception(int code);
    Exception(int code, const String& message);
    Exception(const Exception& other);
    Exception& operator=(const Exception& other);
    virtual ~Exception();

    int GetCode() const;
    void SetCode(int code);
    /// The message; the reference lives as long as this Exception isn't changed.
    const String& GetMessage() const;
    void SetMessage(const String& message);

private:
    ExceptionImpl* m_impl;  // owned
};

}  // namespace zorvex_api
