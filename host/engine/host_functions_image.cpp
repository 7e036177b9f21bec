#include "host/engine/arguments.h"
#include "host/engine/engine_state.h"

namespace zentrix::host {

namespace {

using values = std::span<const script_value>;

element_class integer_class(bool is_signed)
{
    return is_signed ? element_class::signed_integer : element_class::unsigned_integer;
}

std::uint32_t size_at(const arguments& given, std::size_t i)
{
    if (given.integer(i) < 1) throw script_error{"The sizes of an image have to be positive."};
    return given.integer_as<std::uint32_t>(i);
}

/// A picture of width and height from arguments `first` and `first + 1`.
script_value plane(const arguments& given, element_class meaning, std::size_t first)
{
    const auto code = code_of(meaning, given.integer_as<std::uint32_t>(1));
    const std::uint32_t sizes[] = {size_at(given, first), size_at(given, first + 1)};
    return image::create(given.text(0), code, sizes);
}

script_value new_image(values list)
{
    const arguments given{list};
    std::vector<std::uint32_t> sizes;
    for (std::size_t i = 2; i < given.size(); ++i) sizes.push_back(given.integer_as<std::uint32_t>(i));
    return image::create(given.text(0), given.integer_as<std::uint32_t>(1), sizes);
}

void add_makers(engine::inside& to)
{
    to.add_host_function("ComplexImagePtr ComplexImage( string, long, long, long )",
                         [](values list) { return plane(arguments{list}, element_class::complex, 2); });
    to.add_host_function("RealImagePtr IntegerImage( string, long, Boolean, long, long )", [](values list) {
        const arguments given{list};
        return plane(given, integer_class(given.integer(2) != 0), 3);
    });
    to.add_host_function("RealImagePtr RealImage( dm_string, uint32, uint32, uint32 )",
                         [](values list) { return plane(arguments{list}, element_class::real, 2); });
    to.add_host_function("BasicImage NewImage( dm_string, uint32, uint32... )", new_image);
    to.add_host_function("ImageRef ImageClone( ImageRef )",
                         [](values list) -> script_value { return arguments{list}.picture(0)->clone(); });
    to.add_host_function("BasicImage OpenImage( dm_string )", [&to](values list) -> script_value {
        const auto& path = arguments{list}.text(0);
        if (!to.options.open_image) throw script_error{"\"" + path + "\" cannot be opened: this host reads no files."};
        return to.options.open_image(path);
    });
}

std::int64_t dimension_size(const arguments& given)
{
    const auto picture = given.picture(0);
    const auto dimension = given.integer(1);
    if (dimension >= static_cast<std::int64_t>(max_dimensions))
        throw script_error{"An image has no dimension " + std::to_string(dimension) + "."};
    return picture->size(static_cast<std::size_t>(dimension));
}

std::int64_t is_type(const arguments& given, element_class meaning)
{
    const auto& type = given.picture(0)->type();
    return type.meaning == meaning && type.bytes == given.integer(1);
}

void add_queries(engine::inside& to)
{
    const auto code = [](values list) { return std::int64_t{arguments{list}.picture(0)->code()}; };
    to.add_host_function("short GetDataType( ImageRef )", code);
    to.add_host_function("uint32 ImageGetDataType( ImageRef )", code);
    to.add_host_function("void GetSize( ImageRef, long *, long * )", [](values list) -> script_value {
        const arguments given{list};
        const auto picture = given.picture(0);
        given.set(1, std::int64_t{picture->size(0)});
        given.set(2, std::int64_t{picture->size(1)});
        return {};
    });
    to.add_host_function("uint32 ImageGetDataElementByteSize( ImageRef )",
                         [](values list) { return std::int64_t{arguments{list}.picture(0)->type().bytes}; });
    to.add_host_function("uint32 ImageGetDimensionSize( ImageRef, uint32 )",
                         [](values list) { return dimension_size(arguments{list}); });
    to.add_host_function("uint32 ImageGetNumDimensions( ImageRef )", [](values list) {
        return static_cast<std::int64_t>(arguments{list}.picture(0)->dimensions());
    });
    to.add_host_function("dm_string ImageGetName( ImageRef )",
                         [](values list) { return arguments{list}.picture(0)->name(); });
    to.add_host_function("Boolean ImageIsValid( ImageRef )", [](values list) {
        const auto picture = object_in<image>(list[0]);
        return std::int64_t{picture && picture->is_valid()};
    });
    to.add_host_function("Boolean IsComplexDataType( ImageRef, long )",
                         [](values list) { return is_type(arguments{list}, element_class::complex); });
    to.add_host_function("Boolean IsRealDataType( ImageRef, long )",
                         [](values list) { return is_type(arguments{list}, element_class::real); });
}

void add_changes(engine::inside& to)
{
    to.add_host_function("void ConvertToFloat( ImageRef )", [](values list) -> script_value {
        arguments{list}.picture(0)->convert_to_float();
        return {};
    });
    to.add_host_function("void ImageDataChanged( ImageRef )", [](values list) -> script_value {
        arguments{list}.picture(0)->data_changed();
        return {};
    });
}

}  // namespace

void add_image_functions(engine::inside& to)
{
    add_makers(to);
    add_queries(to);
    add_changes(to);
}

}  // namespace zentrix::host
