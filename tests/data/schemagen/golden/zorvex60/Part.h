// Generated from the vocabulary of the schemas; don't edit.
#pragma once

#include "zorvex60/Common.h"
#include "zorvex60/IdObject.h"
#include "zorvex_api/Transf.h"

namespace zorvex60
{

/// The class value of Part in this session; 0 before the first.
extern ZORVEX_API short zorvexClassPart;

/// Class `Part`, abstract: schema type `PartType`, version "1.0 Tiny.xsd".
///
/// Base: zorvex60::IdObject. In comparisons it counts as IdObject.
/// Derived: zorvex60::Bolt, zorvex_cha60::Nut.
/// Used by: zorvex60::Bolt (partRef), zorvex60::Bolt (Washer), zorvex60::Bolt (Status).
class ZORVEX_API Part : public IdObject
{
public:
    /// A root that belongs to the caller.
    Part();
    /// Attaches the new object to `owner`, which may be null. A refusal raises code 2.
    explicit Part(Object* owner);
    ~Part() override;

    // --- code: string, required
    /// `code` (string, required); empty when there is no value.
    String GetCode() const { return typed::GetString(*this, u"code"); }
    /// Sets `code` (string, required).
    Result SetCode(const String& value) { return typed::Set(*this, u"code", value); }
    /// 1 when `code` (string, required) has a value.
    int HasCode() const { return typed::Has(*this, u"code"); }
    /// Takes away `code` (string, required).
    Result UnsetCode() { return typed::Unset(*this, u"code"); }

private:
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;
};

}  // namespace zorvex60
