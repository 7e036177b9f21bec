#include "host/program/estimate_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "host/parameters/parameter_file.h"
#include "host/parameters/record.h"

namespace zentrix::program {

namespace {

template <class... Values>
std::string formatted(const char* format, Values... values)
{
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

/// With as many decimals as the uncertainty has up to its second digit.
std::string number_for(double value, double uncertainty)
{
    const int decimals =
        uncertainty > 0 ? std::clamp(1 - static_cast<int>(std::floor(std::log10(uncertainty))), 0, 9) : 6;
    return formatted("%.*f", decimals, value);
}

std::string line_of(const host::estimated_coefficient& one)
{
    const auto& about = lens::traits(one.which);
    const std::string name{about.name}, unit{about.unit};
    if (!one.determined) return formatted("  %-3s not determined: %s\n", name.c_str(), one.reason.c_str());
    std::string value = number_for(one.value.modulus, one.uncertainty) + " " + unit + " +- " +
                        number_for(one.uncertainty, one.uncertainty);
    if (about.symmetry != 0)
        value += "  at " + number_for(one.value.angle_degrees, one.angle_uncertainty) + " degrees +- " +
                 number_for(one.angle_uncertainty, one.angle_uncertainty);
    return formatted("  %-3s %s\n", name.c_str(), value.c_str());
}

json as_json(const host::estimated_coefficient& one)
{
    const auto& about = lens::traits(one.which);
    json entry{{"determined", one.determined}, {"unit", about.unit}};
    if (one.determined) {
        entry["modulus"] = one.value.modulus;
        entry["uncertainty"] = one.uncertainty;
        if (about.symmetry != 0) {
            entry["degrees"] = one.value.angle_degrees;
            entry["degrees_uncertainty"] = one.angle_uncertainty;
        }
    } else
        entry["reason"] = one.reason;
    return entry;
}

json as_json(const host::estimate& found)
{
    json coefficients = json::object();
    for (const auto& one : found.coefficients) coefficients[std::string{lens::traits(one.which).name}] = as_json(one);
    return {{"object", host::name_of(found.object)},
            {"criterion", found.criterion},
            {"coefficients", coefficients},
            {"chi_uncertainty_rad", found.chi_uncertainty},
            {"resolution_per_nm", found.resolution},
            {"noise", found.noise},
            {"starts", found.starts},
            {"agreeing", found.agreeing},
            {"evaluations", found.evaluations},
            {"seconds", found.seconds}};
}

}  // namespace

host::parameter_set parameters_with(const host::parameter_set& settled, const host::estimate& found)
{
    host::parameter_set result = settled;
    for (const auto& one : found.coefficients)
        if (one.determined) result.coefficients[one.which] = one.value;
    return result;
}

json record_of(const std::string& wave, const host::parameter_set& parameters, const host::estimate& found,
               const global_options& global)
{
    std::vector<std::string> command = global.words;
    command.insert(command.begin(), "zentrix");
    const auto input = host::input_of(wave);
    return {{"command", command},
            {"program", host::program_facts({}, global.use_simd)},
            {"input", {{"name", input.name}, {"size", input.contents.bytes}, {"digest", input.contents.digest}}},
            {"parameters", host::as_json(parameters)},
            {"estimate", as_json(found)}};
}

std::string table_of(const host::estimate& found)
{
    std::string text = std::string{host::name_of(found.object)} + " object, " + found.criterion + "\n";
    for (const auto& one : found.coefficients) text += line_of(one);
    if (found.chi_uncertainty > 0 && found.any_determined())
        text += formatted("  chi%s known to %.2g rad rms up to %.4g /nm\n",
                          found.all_determined() ? "" : " of the determined coefficients", found.chi_uncertainty,
                          found.resolution);
    text += formatted(
        "  noise %.2g of the mean modulus, resolution %.4g /nm; %zu of %zu %s agree; %zu evaluations, %.1f s\n",
        found.noise, found.resolution, found.agreeing, found.starts,
        found.object == host::specimen_kind::phase ? "starts" : "quarters", found.evaluations, found.seconds);
    return text;
}

}  // namespace zentrix::program
