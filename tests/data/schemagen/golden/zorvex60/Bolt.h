// Generated from the vocabulary of the schemas; don't edit.
#pragma once

#include "zorvex60/Common.h"
#include "zorvex60/Part.h"
#include "zorvex60/eHead.h"
#include "zorvex_api/Transf.h"
#include "zorvex_api/Vector.h"
#include <cstddef>

namespace zorvex60
{

class Frame;

/// The class value of Bolt in this session; 0 before the first.
extern ZORVEX_API short zorvexClassBolt;
/// The same, under the older name.
extern ZORVEX_API short zorvexClassScrew;

/// Class `Bolt`: schema type `BoltBase`, version "1.0 Tiny.xsd".
///
/// Base: zorvex60::Part. In comparisons it counts as IdObject.
/// Used by: zorvex60::Bolt (nutRefs), zorvex60::Bolt (boltRefs).
class ZORVEX_API Bolt : public Part
{
public:
    /// A root that belongs to the caller.
    Bolt();
    /// Attaches the new object to `owner`, which may be null. A refusal raises code 2.
    explicit Bolt(Object* owner);
    ~Bolt() override;
    using Object::HasAttribute;

    // --- hollow: logical, default "false"
    /// `hollow` (logical, default "false"); 0 when there is no value.
    int GetHollow() const { return typed::GetInt(*this, u"hollow"); }
    /// Sets `hollow` (logical, default "false").
    Result SetHollow(int value) { return typed::Set(*this, u"hollow", value); }
    /// 1 when `hollow` (logical, default "false") has a value; its default counts.
    int HasHollow() const { return typed::Has(*this, u"hollow"); }
    /// Takes away `hollow` (logical, default "false").
    Result UnsetHollow() { return typed::Unset(*this, u"hollow"); }

    // --- count: int, required
    /// `count` (int, required); 0 when there is no value.
    int GetCount() const { return typed::GetInt(*this, u"count"); }
    /// Sets `count` (int, required).
    Result SetCount(int value) { return typed::Set(*this, u"count", value); }
    /// 1 when `count` (int, required) has a value.
    int HasCount() const { return typed::Has(*this, u"count"); }
    /// Takes away `count` (int, required).
    Result UnsetCount() { return typed::Unset(*this, u"count"); }

    // --- ratios: double[]
    /// Reads `ratios` (double[]).
    Result GetRatios(Array<double>& values) const { return typed::Get(*this, u"ratios", values); }
    /// Sets `ratios` (double[]).
    Result SetRatios(const Array<double>& values) { return typed::Set(*this, u"ratios", values); }
    /// 1 when `ratios` (double[]) has a value.
    int HasRatios() const { return typed::Has(*this, u"ratios"); }
    /// Takes away `ratios` (double[]).
    Result UnsetRatios() { return typed::Unset(*this, u"ratios"); }

    // --- axis: double[3], deprecated, default "0.0,0.0,1.0"
    /// Reads `axis` (double[3], deprecated, default "0.0,0.0,1.0"); room for 3.
    Result GetAxis(double* values) const { return typed::GetList(*this, u"axis", 3, values); }
    /// Sets `axis` (double[3], deprecated, default "0.0,0.0,1.0"); null is refused, as any other
    /// number of values.
    Result SetAxis(const double* values) { return typed::SetList(*this, u"axis", 3, values); }
    /// 1 when `axis` (double[3], deprecated, default "0.0,0.0,1.0") has a value; its default
    /// counts.
    int HasAxis() const { return typed::Has(*this, u"axis"); }
    /// Takes away `axis` (double[3], deprecated, default "0.0,0.0,1.0").
    Result UnsetAxis() { return typed::Unset(*this, u"axis"); }

    // --- attribute: string
    /// `attribute` (string); empty when there is no value.
    String GetAttribute() const { return typed::GetString(*this, u"attribute"); }
    /// Sets `attribute` (string).
    Result SetAttribute(const String& value) { return typed::Set(*this, u"attribute", value); }
    /// 1 when `attribute` (string) has a value.
    int HasAttribute() const { return typed::Has(*this, u"attribute"); }
    /// Takes away `attribute` (string).
    Result UnsetAttribute() { return typed::Unset(*this, u"attribute"); }

    // --- origin: vector
    /// Reads `origin` (vector).
    Result GetOrigin(Vector& value) const { return typed::Get(*this, u"origin", value); }
    /// Sets `origin` (vector).
    Result SetOrigin(const Vector& value) { return typed::Set(*this, u"origin", value); }
    /// 1 when `origin` (vector) has a value.
    int HasOrigin() const { return typed::Has(*this, u"origin"); }
    /// Takes away `origin` (vector).
    Result UnsetOrigin() { return typed::Unset(*this, u"origin"); }

    // --- Note: content String
    /// `Note` (content String); empty when there is no value.
    String GetNote() const { return typed::GetString(*this, u"Note"); }
    /// Sets `Note` (content String).
    Result SetNote(const String& value) { return typed::Set(*this, u"Note", value); }
    /// 1 when `Note` (content String) has a value.
    int HasNote() const { return typed::Has(*this, u"Note"); }
    /// Takes away `Note` (content String).
    Result UnsetNote() { return typed::Unset(*this, u"Note"); }

    // --- Direction: content[3] Double
    /// Reads `Direction` (content[3] Double).
    Result GetDirection(Vector& value) const
    {
        return typed::GetContent(*this, u"Direction", value);
    }
    /// Sets `Direction` (content[3] Double).
    Result SetDirection(const Vector& value)
    {
        return typed::SetContent(*this, u"Direction", value);
    }
    /// 1 when `Direction` (content[3] Double) has a value.
    int HasDirection() const { return typed::Has(*this, u"Direction"); }
    /// Takes away `Direction` (content[3] Double).
    Result UnsetDirection() { return typed::Unset(*this, u"Direction"); }

    // --- Matrix: content[] Double
    /// Sets `Matrix` (content[] Double).
    Result SetMatrix(const Transf& value) { return typed::SetContent(*this, u"Matrix", value); }
    /// 1 when `Matrix` (content[] Double) has a value.
    int HasMatrix() const { return typed::Has(*this, u"Matrix"); }
    /// Takes away `Matrix` (content[] Double).
    Result UnsetMatrix() { return typed::Unset(*this, u"Matrix"); }

    // --- head: enum eHead, default "hexagon"
    /// `head` (enum eHead, default "hexagon"); a text that it lacks gives an invalid value.
    eHead GetHead() const { return eHead(typed::GetString(*this, u"head")); }
    /// Sets `head` (enum eHead, default "hexagon").
    Result SetHead(const eHead& value) { return typed::Set(*this, u"head", value.ToString()); }
    /// 1 when `head` (enum eHead, default "hexagon") has a value; its default counts.
    int HasHead() const { return typed::Has(*this, u"head"); }
    /// Takes away `head` (enum eHead, default "hexagon").
    Result UnsetHead() { return typed::Unset(*this, u"head"); }

    // --- textRef: URI Text
    /// `textRef` (URI Text): its text.
    String GetTextURI() const { return typed::GetString(*this, u"textRef"); }
    /// `textRef` (URI Text): what it is known to lead to.
    Result GetTextURI(Handle& target) const { return typed::GetURI(*this, u"textRef", target); }
    /// Sets `textRef` (URI Text) as text.
    Result SetTextURI(const String& text) { return typed::Set(*this, u"textRef", text); }
    /// Sets `textRef` (URI Text) to lead to an object.
    Result SetTextURI(const Handle& target) { return typed::SetURI(*this, u"textRef", target); }
    /// 1 when `textRef` (URI Text) has a value.
    int HasTextURI() const { return typed::Has(*this, u"textRef"); }
    /// Takes away `textRef` (URI Text).
    Result DeleteTextURI() { return typed::Unset(*this, u"textRef"); }
    /// Follows `textRef` (URI Text); may load a document.
    Result ResolveTextURI(Handle& target, Configuration* configuration = nullptr)
    {
        return typed::ResolveURI(*this, u"textRef", target, configuration);
    }

    // --- nutRefs: URIs cha:Nut or Bolt
    /// Appends to `nutRefs` (URIs cha:Nut or Bolt) as text.
    Result AddNutURI(const String& text) { return typed::AddURI(*this, u"nutRefs", text); }
    /// Appends to `nutRefs` (URIs cha:Nut or Bolt) what leads to an object.
    Result AddNutURI(const Handle& target) { return typed::AddURI(*this, u"nutRefs", target); }
    /// How many `nutRefs` (URIs cha:Nut or Bolt) has.
    int NumberOfNutURIs() const { return typed::CountReferences(*this, u"nutRefs"); }
    /// 1 when `nutRefs` (URIs cha:Nut or Bolt) has a value.
    int HasNutURIs() const { return typed::Has(*this, u"nutRefs"); }
    /// Text `index` of `nutRefs` (URIs cha:Nut or Bolt); raises code 16 out of range.
    String GetNutURI(int index) const { return typed::GetURI(*this, u"nutRefs", index); }
    /// What entry `index` of `nutRefs` (URIs cha:Nut or Bolt) is known to lead to; code 16 out of
    /// range.
    Result GetNutURI(int index, Handle& target) const
    {
        return typed::GetURI(*this, u"nutRefs", index, target);
    }
    /// Replaces entry `index` of `nutRefs` (URIs cha:Nut or Bolt); code 16 out of range.
    Result SetNutURI(int index, const String& text)
    {
        return typed::SetURI(*this, u"nutRefs", index, text);
    }
    /// Replaces entry `index` of `nutRefs` (URIs cha:Nut or Bolt); code 16 out of range.
    Result SetNutURI(int index, const Handle& target)
    {
        return typed::SetURI(*this, u"nutRefs", index, target);
    }
    /// Takes entry `index` out of `nutRefs` (URIs cha:Nut or Bolt); code 16 out of range.
    Result DeleteNutURI(int index) { return typed::DeleteURI(*this, u"nutRefs", index); }
    /// Takes away `nutRefs` (URIs cha:Nut or Bolt).
    Result DeleteNutURIs() { return typed::Unset(*this, u"nutRefs"); }
    /// Follows entry `index` of `nutRefs` (URIs cha:Nut or Bolt); code 16 out of range.
    Result ResolveNutURI(int index, Handle& target, Configuration* configuration = nullptr)
    {
        return typed::ResolveURI(*this, u"nutRefs", index, target, configuration);
    }

    // --- partRef: reference Part
    /// The id in `partRef` (reference Part).
    String GetPartId() const { return typed::GetId(*this, u"partRef"); }
    /// Sets `partRef` (reference Part) by id; 1 on success.
    int SetPartId(const String& id) { return typed::SetId(*this, u"partRef", id); }
    /// Sets `partRef` (reference Part); null takes it away; 1 on success.
    int SetPartRef(Part* target)
    {
        return typed::SetRef(*this, u"partRef", typed::ToObject(target));
    }
    /// 1 when `partRef` (reference Part) has a value.
    int HasPartRef() const { return typed::Has(*this, u"partRef"); }
    /// Takes away `partRef` (reference Part).
    void RemovePartRef() { typed::Unset(*this, u"partRef"); }
    /// The object that `partRef` (reference Part) leads to, or null.
    Part* ResolvePartRef(Configuration* configuration = nullptr)
    {
        return typed::As<Part>(typed::ResolveRef(*this, u"partRef", configuration));
    }

    // --- boltRefs: references Bolt
    /// Appends an id to `boltRefs` (references Bolt); 1 on success.
    int AddBoltId(const String& id) { return typed::AddId(*this, u"boltRefs", id); }
    /// Appends an object to `boltRefs` (references Bolt); 1 on success.
    int AddBoltRef(Bolt* target)
    {
        return typed::AddRef(*this, u"boltRefs", typed::ToObject(target));
    }
    /// How many `boltRefs` (references Bolt) has.
    int NumberOfBoltRefs() const { return typed::CountReferences(*this, u"boltRefs"); }
    /// 1 when `boltRefs` (references Bolt) has a value.
    int HasBoltRefs() const { return typed::Has(*this, u"boltRefs"); }
    /// Id `index` of `boltRefs` (references Bolt); raises code 16 out of range.
    String GetBoltId(int index) const { return typed::GetId(*this, u"boltRefs", index); }
    /// Appends all ids of `boltRefs` (references Bolt).
    void GetBoltIds(Array<String>& ids) const { typed::GetIds(*this, u"boltRefs", ids); }
    /// Replaces entry `index` of `boltRefs` (references Bolt); 0 out of range.
    int SetBoltId(int index, const String& id)
    {
        return typed::SetId(*this, u"boltRefs", index, id);
    }
    /// Replaces entry `index` of `boltRefs` (references Bolt); 0 out of range.
    int SetBoltRef(int index, Bolt* target)
    {
        return typed::SetRef(*this, u"boltRefs", index, typed::ToObject(target));
    }
    /// Takes entry `index` out of `boltRefs` (references Bolt); raises code 16 out of range.
    void RemoveBoltRef(int index) { typed::RemoveRef(*this, u"boltRefs", index); }
    /// Takes the first entry of this id out of `boltRefs` (references Bolt).
    void RemoveBoltRef(const String& id) { typed::RemoveRef(*this, u"boltRefs", id); }
    /// Takes the first entry of this object out of `boltRefs` (references Bolt).
    void RemoveBoltRef(Bolt* target)
    {
        typed::RemoveRef(*this, u"boltRefs", typed::ToObject(target));
    }
    /// Takes away `boltRefs` (references Bolt).
    void RemoveBoltRefs() { typed::Unset(*this, u"boltRefs"); }
    /// The object that entry `index` of `boltRefs` (references Bolt) leads to, or null.
    Bolt* ResolveBoltRef(int index, Configuration* configuration = nullptr)
    {
        return typed::As<Bolt>(typed::ResolveRef(*this, u"boltRefs", index, configuration));
    }
    /// Appends the objects that `boltRefs` (references Bolt) leads to.
    void ResolveBoltRefs(Array<Bolt*>& targets, Configuration* configuration = nullptr)
    {
        typed::ResolveRefs(*this, u"boltRefs", targets, configuration);
    }

    // --- Washer: element Part, required
    /// `Washer` (element Part, required), or null.
    Part* GetWasher() const
    {
        return typed::As<Part>(typed::GetElement(*this, u"http://example.org/Main:Bolt:Washer"));
    }
    /// Makes `Washer` (element Part, required); null when there is one already.
    Part* AddWasher()
    {
        return typed::As<Part>(typed::AddSingleElement(*this, u"http://example.org/Main:Part", u"http://example.org/Main:Bolt:Washer"));
    }
    /// Attaches a root as `Washer` (element Part, required); null gives code 2.
    Result SetWasher(Part* element)
    {
        return typed::AttachElement(*this, typed::ToObject(element), u"http://example.org/Main:Bolt:Washer");
    }
    /// Deletes `Washer` (element Part, required).
    void DeleteWasher() { typed::DeleteElements(*this, u"http://example.org/Main:Bolt:Washer"); }

    // --- Status: elements Part
    /// Makes one of `Status` (elements Part) at the end.
    Part* AddStatus()
    {
        return typed::As<Part>(typed::AddElement(*this, u"http://example.org/Main:Part", u"http://example.org/Main:Bolt:Status"));
    }
    /// Attaches a root to `Status` (elements Part) at the end; null gives code 2.
    Result AddStatus(Part* element)
    {
        return typed::AttachElement(*this, typed::ToObject(element), u"http://example.org/Main:Bolt:Status");
    }
    /// Element `index` of `Status` (elements Part), or null.
    Part* GetStatus(int index) const
    {
        return typed::As<Part>(typed::GetElement(*this, u"http://example.org/Main:Bolt:Status", index));
    }
    /// Fills the array with all of `Status` (elements Part).
    void GetStatuses(Array<Part*>& elements) const
    {
        typed::GetElements(*this, u"http://example.org/Main:Bolt:Status", elements);
    }
    /// How many `Status` (elements Part) has.
    int NumberOfStatuses() const
    {
        return typed::CountElements(*this, u"http://example.org/Main:Bolt:Status");
    }
    /// Deletes element `index` of `Status` (elements Part); raises code 16 out of range.
    void DeleteStatus(int index)
    {
        typed::DeleteElement(*this, u"http://example.org/Main:Bolt:Status", index);
    }
    /// Deletes one of `Status` (elements Part).
    void DeleteStatus(Part* element) { typed::DeleteElement(*this, typed::ToObject(element)); }
    /// Deletes all of `Status` (elements Part).
    void DeleteStatuses() { typed::DeleteElements(*this, u"http://example.org/Main:Bolt:Status"); }

    // --- further operations
    /// Written by hand.
    Result GetMatrix(Transf& value) const;
    Frame* MakeFrame(std::size_t size);

private:
    Bolt(const Bolt&) = delete;
    Bolt& operator=(const Bolt&) = delete;
};

}  // namespace zorvex60
