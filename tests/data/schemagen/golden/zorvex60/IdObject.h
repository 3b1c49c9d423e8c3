// Generated from the vocabulary of the schemas; don't edit.
#pragma once

#include "zorvex60/Common.h"

namespace zorvex60
{

/// The class value of IdObject in this session; 0 before the first.
extern ZORVEX_API short zorvexClassIdObject;

/// Class `IdObject`, abstract: schema type `IdObjectType`, version "1.0 Tiny.xsd".
///
/// Base: zorvex_api::Object. It has no equivalent class.
/// Derived: zorvex60::Part.
class ZORVEX_API IdObject : public Object
{
public:
    /// A root that belongs to the caller.
    IdObject();
    /// Attaches the new object to `owner`, which may be null. A refusal raises code 2.
    explicit IdObject(Object* owner);
    ~IdObject() override;

private:
    IdObject(const IdObject&) = delete;
    IdObject& operator=(const IdObject&) = delete;
};

}  // namespace zorvex60
