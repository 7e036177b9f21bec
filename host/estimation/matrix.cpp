#include "host/estimation/matrix.h"

#include <algorithm>
#include <cmath>

namespace zentrix::host {

matrix matrix::transposed() const
{
    matrix result{size_};
    for (std::size_t i = 0; i < size_; ++i)
        for (std::size_t j = 0; j < size_; ++j) result(j, i) = (*this)(i, j);
    return result;
}

matrix operator*(const matrix& a, const matrix& b)
{
    matrix result{a.size_};
    for (std::size_t i = 0; i < a.size_; ++i)
        for (std::size_t k = 0; k < a.size_; ++k)
            for (std::size_t j = 0; j < a.size_; ++j) result(i, j) += a(i, k) * b(k, j);
    return result;
}

std::vector<double> operator*(const matrix& a, const std::vector<double>& b)
{
    std::vector<double> result(a.size_);
    for (std::size_t i = 0; i < a.size_; ++i)
        for (std::size_t j = 0; j < a.size_; ++j) result[i] += a(i, j) * b[j];
    return result;
}

std::optional<matrix> inverse_of(matrix a)
{
    const std::size_t n = a.size();
    matrix result{n};
    double largest = 0;
    for (std::size_t i = 0; i < n; ++i) {
        result(i, i) = 1;
        for (std::size_t j = 0; j < n; ++j) largest = std::max(largest, std::abs(a(i, j)));
    }
    for (std::size_t column = 0; column < n; ++column) {
        std::size_t pivot = column;
        for (std::size_t row = column + 1; row < n; ++row)
            if (std::abs(a(row, column)) > std::abs(a(pivot, column))) pivot = row;
        if (!(std::abs(a(pivot, column)) > 1e-12 * largest)) return std::nullopt;
        for (std::size_t j = 0; j < n; ++j) {
            std::swap(a(column, j), a(pivot, j));
            std::swap(result(column, j), result(pivot, j));
        }
        const double scale = 1 / a(column, column);
        for (std::size_t j = 0; j < n; ++j) {
            a(column, j) *= scale;
            result(column, j) *= scale;
        }
        for (std::size_t row = 0; row < n; ++row) {
            const double factor = a(row, column);
            if (row == column || factor == 0) continue;
            for (std::size_t j = 0; j < n; ++j) {
                a(row, j) -= factor * a(column, j);
                result(row, j) -= factor * result(column, j);
            }
        }
    }
    return result;
}

}  // namespace zentrix::host
