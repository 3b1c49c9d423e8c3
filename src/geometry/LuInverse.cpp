#include "geometry/LuInverse.h"

#include <algorithm>
#include <cmath>

namespace zorvex_api::internal
{

namespace
{

constexpr int kRows = 4;
constexpr double kTinyPivot = 1e-20;

/// L below the diagonal (unit diagonal), U on and above it, of the matrix with its rows exchanged
/// as `pivotRow` tells step by step.
struct Decomposition
{
    double lu[kRows][kRows];
    int pivotRow[kRows];
};

bool RowScales(const double matrix[kRows][kRows], double scales[kRows])
{
    for (int row = 0; row < kRows; ++row)
    {
        double largest = 0.0;
        for (int column = 0; column < kRows; ++column)
        {
            largest = std::max(largest, std::fabs(matrix[row][column]));
        }
        if (largest == 0.0)
        {
            return false;
        }
        scales[row] = 1.0 / largest;
    }
    return true;
}

/// The entry less the sum over the `terms` leading entries of its row and column.
double Reduced(const double lu[kRows][kRows], int row, int column, int terms)
{
    double sum = lu[row][column];
    for (int k = 0; k < terms; ++k)
    {
        sum -= lu[row][k] * lu[k][column];
    }
    return sum;
}

bool Decompose(Decomposition& d)
{
    double scales[kRows];
    if (!RowScales(d.lu, scales))
    {
        return false;
    }
    for (int column = 0; column < kRows; ++column)
    {
        for (int row = 0; row < column; ++row)
        {
            d.lu[row][column] = Reduced(d.lu, row, column, row);
        }
        double largest = 0.0;
        int pivot = column;
        for (int row = column; row < kRows; ++row)
        {
            d.lu[row][column] = Reduced(d.lu, row, column, column);
            const double size = scales[row] * std::fabs(d.lu[row][column]);
            if (size >= largest)  // on a tie the later row
            {
                largest = size;
                pivot = row;
            }
        }
        if (pivot != column)
        {
            std::swap_ranges(d.lu[pivot], d.lu[pivot] + kRows, d.lu[column]);
            scales[pivot] = scales[column];
        }
        d.pivotRow[column] = pivot;
        if (d.lu[column][column] == 0.0)
        {
            d.lu[column][column] = kTinyPivot;
        }
        const double reciprocal = 1.0 / d.lu[column][column];
        for (int row = column + 1; row < kRows; ++row)
        {
            d.lu[row][column] *= reciprocal;
        }
    }
    return true;
}

void Substitute(const Decomposition& d, double side[kRows])
{
    int firstNonZero = -1;  // leading zeros of the right-hand side are skipped
    for (int row = 0; row < kRows; ++row)
    {
        const int from = d.pivotRow[row];
        double sum = side[from];
        side[from] = side[row];
        if (firstNonZero >= 0)
        {
            for (int k = firstNonZero; k < row; ++k)
            {
                sum -= d.lu[row][k] * side[k];
            }
        }
        else if (sum != 0.0)
        {
            firstNonZero = row;
        }
        side[row] = sum;
    }
    for (int row = kRows - 1; row >= 0; --row)
    {
        double sum = side[row];
        for (int k = row + 1; k < kRows; ++k)
        {
            sum -= d.lu[row][k] * side[k];
        }
        side[row] = sum / d.lu[row][row];
    }
}

}  // namespace

bool InvertMatrix4x4(double matrix[4][4])
{
    Decomposition d;
    std::copy(&matrix[0][0], &matrix[0][0] + kRows * kRows, &d.lu[0][0]);
    if (!Decompose(d))
    {
        return false;
    }
    for (int column = 0; column < kRows; ++column)
    {
        double side[kRows] = {0.0, 0.0, 0.0, 0.0};
        side[column] = 1.0;
        Substitute(d, side);
        for (int row = 0; row < kRows; ++row)
        {
            matrix[row][column] = side[row];
        }
    }
    return true;
}

}  // namespace zorvex_api::internal
