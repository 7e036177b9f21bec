#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace zentrix::host {

/// A small square matrix, row by row.
class matrix
{
  public:
    explicit matrix(std::size_t size) : size_{size}, values_(size * size) {}

    std::size_t size() const noexcept { return size_; }
    double& operator()(std::size_t row, std::size_t column) { return values_[row * size_ + column]; }
    double operator()(std::size_t row, std::size_t column) const { return values_[row * size_ + column]; }

    matrix transposed() const;
    friend matrix operator*(const matrix& a, const matrix& b);
    friend std::vector<double> operator*(const matrix& a, const std::vector<double>& b);

  private:
    std::size_t size_;
    std::vector<double> values_;
};

/// The matrix whose columns are convert(unit vector), of a linear function of vectors with `size` elements.
template <class Convert>
matrix matrix_of(std::size_t size, const Convert& convert)
{
    matrix result{size};
    for (std::size_t j = 0; j < size; ++j) {
        std::vector<double> axis(size);
        axis[j] = 1;
        const auto column = convert(axis);
        for (std::size_t i = 0; i < size; ++i) result(i, j) = column[i];
    }
    return result;
}

/// By Gauss-Jordan elimination with row pivoting; nothing for a matrix that is singular to 1e-12.
std::optional<matrix> inverse_of(matrix a);

}  // namespace zentrix::host
