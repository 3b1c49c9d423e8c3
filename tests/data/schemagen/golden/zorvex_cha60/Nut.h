// Generated from the vocabulary of the schemas; don't edit.
#pragma once

#include "zorvex60/Part.h"
#include "zorvex60/eHead.h"
#include "zorvex_cha60/Common.h"

namespace zorvex_cha60
{

/// The class value of Nut in this session; 0 before the first.
extern ZORVEX_API short zorvexClassNut;

/// Class `Nut`: schema type `NutType`, version "1.0 Other.xsd".
///
/// Base: zorvex60::Part. In comparisons it counts as Part.
/// Used by: zorvex60::Bolt::nutRefs, zorvex_cha60::Nut::Lock.
class ZORVEX_API Nut : public zorvex60::Part
{
public:
    Nut();
    /// Attaches the new object to `owner`, which may be null. A refusal raises code 2.
    explicit Nut(Object* owner);
    ~Nut() override;

    // --- head: enum eHead
    /// `head` (enum eHead); a text that it lacks gives an invalid value.
    zorvex60::eHead GetHead() const { return zorvex60::eHead(typed::GetString(*this, u"head")); }
    /// Sets `head` (enum eHead).
    Result SetHead(const zorvex60::eHead& value)
    {
        return typed::Set(*this, u"head", value.ToString());
    }
    /// 1 when `head` (enum eHead) has a value.
    int HasHead() const { return typed::Has(*this, u"head"); }
    /// Takes away `head` (enum eHead).
    Result UnsetHead() { return typed::Unset(*this, u"head"); }

    // --- Lock: element cha:Nut
    /// `Lock` (element cha:Nut), or null.
    Nut* GetLock() const
    {
        return typed::As<Nut>(typed::GetElement(*this, u"http://example.org/Cha:Nut:Lock"));
    }
    /// Makes `Lock` (element cha:Nut); null when there is one already.
    Nut* AddLock()
    {
        return typed::As<Nut>(typed::AddSingleElement(*this, u"http://example.org/Cha:Nut", u"http://example.org/Cha:Nut:Lock"));
    }
    /// Attaches a root as `Lock` (element cha:Nut); null gives code 2.
    Result SetLock(Nut* element)
    {
        return typed::AttachElement(*this, typed::ToObject(element), u"http://example.org/Cha:Nut:Lock");
    }
    /// Deletes `Lock` (element cha:Nut).
    void DeleteLock() { typed::DeleteElements(*this, u"http://example.org/Cha:Nut:Lock"); }

private:
    Nut(const Nut&) = delete;
    Nut& operator=(const Nut&) = delete;
};

}  // namespace zorvex_cha60
