#include "host/engine/host_functions.h"

namespace zentrix::host {

namespace {

element_class integer_class(bool is_signed)
{
    return is_signed ? element_class::signed_integer : element_class::unsigned_integer;
}

std::uint32_t size_at(const arguments& passed, std::size_t i)
{
    if (passed.integer(i) < 1) throw script_error{"The sizes of an image have to be positive."};
    return passed.integer_as<std::uint32_t>(i);
}

/// An image of the name, bytes per element, width and height in arguments 0, 1, `first` and `first + 1`.
script_value plane(const arguments& passed, element_class meaning, std::size_t first)
{
    const auto code = code_of(meaning, passed.integer_as<std::uint32_t>(1));
    const std::uint32_t sizes[] = {size_at(passed, first), size_at(passed, first + 1)};
    return image::create(passed.text(0), code, sizes);
}

script_value new_image(const arguments& passed)
{
    std::vector<std::uint32_t> sizes;
    for (std::size_t i = 2; i < passed.size(); ++i) sizes.push_back(passed.integer_as<std::uint32_t>(i));
    return image::create(passed.text(0), passed.integer_as<std::uint32_t>(1), sizes);
}

void register_makers(engine_state& state)
{
    state.add_host_function("ComplexImagePtr ComplexImage( string, long, long, long )",
                            [](const arguments& passed) { return plane(passed, element_class::complex, 2); });
    state.add_host_function(
        "RealImagePtr IntegerImage( string, long, Boolean, long, long )",
        [](const arguments& passed) { return plane(passed, integer_class(passed.integer(2) != 0), 3); });
    state.add_host_function("RealImagePtr RealImage( dm_string, uint32, uint32, uint32 )",
                            [](const arguments& passed) { return plane(passed, element_class::real, 2); });
    state.add_host_function("BasicImage NewImage( dm_string, uint32, uint32... )", new_image);
    state.add_host_function("ImageRef ImageClone( ImageRef )",
                            [](const arguments& passed) { return passed.picture(0)->clone(); });
    state.add_host_function("BasicImage OpenImage( dm_string )", [&state](const arguments& passed) {
        const auto& path = passed.text(0);
        if (!state.options.open_image)
            throw script_error{"\"" + path + "\" cannot be opened: this host reads no files."};
        return state.options.open_image(path);
    });
}

std::int64_t dimension_size(const arguments& passed)
{
    const auto picture = passed.picture(0);
    const auto dimension = passed.integer(1);
    if (dimension >= static_cast<std::int64_t>(max_dimensions))
        throw script_error{"An image has no dimension " + std::to_string(dimension) + "."};
    return picture->size(static_cast<std::size_t>(dimension));
}

std::int64_t is_type(const arguments& passed, element_class meaning)
{
    const auto& type = passed.picture(0)->type();
    return type.meaning == meaning && type.bytes == passed.integer(1);
}

void register_queries(engine_state& state)
{
    const auto code = [](const arguments& passed) { return std::int64_t{passed.picture(0)->code()}; };
    state.add_host_function("short GetDataType( ImageRef )", code);
    state.add_host_function("uint32 ImageGetDataType( ImageRef )", code);
    state.add_host_function("void GetSize( ImageRef, long *, long * )", [](const arguments& passed) -> script_value {
        const auto picture = passed.picture(0);
        passed.set(1, std::int64_t{picture->size(0)});
        passed.set(2, std::int64_t{picture->size(1)});
        return {};
    });
    state.add_host_function("uint32 ImageGetDataElementByteSize( ImageRef )",
                            [](const arguments& passed) { return std::int64_t{passed.picture(0)->type().bytes}; });
    state.add_host_function("uint32 ImageGetDimensionSize( ImageRef, uint32 )", dimension_size);
    state.add_host_function("uint32 ImageGetNumDimensions( ImageRef )", [](const arguments& passed) {
        return static_cast<std::int64_t>(passed.picture(0)->dimensions());
    });
    state.add_host_function("dm_string ImageGetName( ImageRef )",
                            [](const arguments& passed) { return passed.picture(0)->name(); });
    state.add_host_function("Boolean ImageIsValid( ImageRef )", [](const arguments& passed) {
        const auto picture = object_in<image>(passed.value(0));
        return std::int64_t{picture && picture->is_valid()};
    });
    state.add_host_function("Boolean IsComplexDataType( ImageRef, long )",
                            [](const arguments& passed) { return is_type(passed, element_class::complex); });
    state.add_host_function("Boolean IsRealDataType( ImageRef, long )",
                            [](const arguments& passed) { return is_type(passed, element_class::real); });
}

void register_changes(engine_state& state)
{
    state.add_host_function("void ConvertToFloat( ImageRef )", [](const arguments& passed) -> script_value {
        passed.picture(0)->convert_to_float();
        return {};
    });
    state.add_host_function("void ImageDataChanged( ImageRef )", [](const arguments& passed) -> script_value {
        passed.picture(0)->data_changed();
        return {};
    });
}

}  // namespace

void register_image_functions(engine_state& state)
{
    register_makers(state);
    register_queries(state);
    register_changes(state);
}

}  // namespace zentrix::host
