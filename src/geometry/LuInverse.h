#pragma once

namespace zorvex_api::internal
{

/// Inverts a 4x4 matrix in place: Crout's decomposition with implicitly scaled partial pivoting,
/// then a substitution for each column of the identity. A zero pivot counts as 1e-20. False, with
/// `matrix` as it was, when a whole row is zero.
bool InvertMatrix4x4(double matrix[4][4]);

}  // namespace zorvex_api::internal
