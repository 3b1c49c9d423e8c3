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
/// Used by: zorvex60::Bolt (nutRefs), zorvex_cha60::Nut (Lock), zorvex_cha60::Nut (Code).
class ZORVEX_API Nut : public zorvex60::Part
{
public:
    /// A root that belongs to the caller.
    Nut();
    /// Attaches the new object to `owner`, which may be null. A refusal raises code 2.
    explicit Nut(Object* owner);
    ~Nut() override;
    using zorvex60::Part::GetCode;

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

    // --- Code: elements cha:Nut
    /// Makes one of `Code` (elements cha:Nut) at the end.
    Nut* AddCode()
    {
        return typed::As<Nut>(typed::AddElement(*this, u"http://example.org/Cha:Nut", u"http://example.org/Cha:Nut:Code"));
    }
    /// Attaches a root to `Code` (elements cha:Nut) at the end; null gives code 2.
    Result AddCode(Nut* element)
    {
        return typed::AttachElement(*this, typed::ToObject(element), u"http://example.org/Cha:Nut:Code");
    }
    /// Element `index` of `Code` (elements cha:Nut), or null.
    Nut* GetCode(int index) const
    {
        return typed::As<Nut>(typed::GetElement(*this, u"http://example.org/Cha:Nut:Code", index));
    }
    /// Fills the array with all of `Code` (elements cha:Nut).
    void GetCodes(Array<Nut*>& elements) const
    {
        typed::GetElements(*this, u"http://example.org/Cha:Nut:Code", elements);
    }
    /// How many `Code` (elements cha:Nut) has.
    int NumberOfCodes() const
    {
        return typed::CountElements(*this, u"http://example.org/Cha:Nut:Code");
    }
    /// Deletes element `index` of `Code` (elements cha:Nut); raises code 16 out of range.
    void DeleteCode(int index)
    {
        typed::DeleteElement(*this, u"http://example.org/Cha:Nut:Code", index);
    }
    /// Deletes one of `Code` (elements cha:Nut).
    void DeleteCode(Nut* element) { typed::DeleteElement(*this, typed::ToObject(element)); }
    /// Deletes all of `Code` (elements cha:Nut).
    void DeleteCodes() { typed::DeleteElements(*this, u"http://example.org/Cha:Nut:Code"); }

private:
    Nut(const Nut&) = delete;
    Nut& operator=(const Nut&) = delete;
};

}  // namespace zorvex_cha60
