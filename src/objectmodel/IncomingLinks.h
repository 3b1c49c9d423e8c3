#pragma once

namespace zorvex_api
{

class ClassData;

/// What points at an object is known to it: linked Ids (Id::SetLink) and URI references whose
/// target it is (ExternalRep::LinkTarget) stand in chains of their target. Making and ending a link
/// costs a constant time and needs nothing beyond those two operations.

/// Cuts everything that points at an object that ends; references keep their last text.
void CutIncomingLinks(ClassData& target) noexcept;

}  // namespace zorvex_api
