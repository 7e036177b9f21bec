#include "functions/rank/median.h"

#include "functions/rank/nth_element.h"
#include "image/errors.h"

namespace qorv::functions {

template <class T>
T median_of(T* first, T* last)
{
    const std::ptrdiff_t count = last - first;
    const T middle = select(first, last, count / 2);
    return count % 2 != 0 ? middle : (select(first, last, count / 2 - 1) + middle) * T(0.5);
}

template <class T>
T median(const dm::image<const T>& values)
{
    dm::require(values.data() != nullptr && values.size() > 0, dm::errors::parameters_invalid);
    const bool odd = values.size() % 2 != 0;
    const auto& kernel = dm::choose(rank_variants<T>());
    const auto found = kernel.function(values, values.size() / 2, odd ? neighbour::none : neighbour::before);
    return odd ? found.at : (found.before + found.at) * T(0.5);
}

template float median_of(float*, float*);
template double median_of(double*, double*);
template float median(const dm::image<const float>&);
template double median(const dm::image<const double>&);

}  // namespace qorv::functions
