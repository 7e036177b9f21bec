#pragma once

#include <gtest/gtest.h>

#include <complex>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/engine/engine.h"
#include "host/engine/library.h"
#include "image/element_type.h"
#include "tests/support/digest.h"

/// The built library, loaded into the stand-alone host as any program loads it.
namespace script {

using namespace zentrix::host;
using integer = std::int64_t;

inline const script_value null{};

/// A host with the library in it. Its end fails the test when anything is still held or the contract was breached.
class script_host
{
  public:
    /// before_load  prepares the host for a test before the library is linked to it
    explicit script_host(engine_options options = with_checks(), const std::function<void(engine&)>& before_load = {})
        : engine_{std::move(options)}
    {
        if (before_load) before_load(engine_);
        library_.emplace(engine_, ZENTRIX_LIBRARY_FILE);
    }
    ~script_host()
    {
        library_.reset();
        EXPECT_EQ(engine_.report().text(), "");
    }

    engine& host() { return engine_; }
    script_value call(std::string_view name, const std::vector<script_value>& arguments)
    {
        return engine_.call(name, arguments);
    }
    image_ref call_image(std::string_view name, const std::vector<script_value>& arguments)
    {
        return object_in<image>(call(name, arguments));
    }
    /// The text with which the call fails; empty when it does not.
    std::string failure(std::string_view name, const std::vector<script_value>& arguments)
    {
        try {
            call(name, arguments);
        } catch (const script_error& error) {
            return error.what();
        }
        return {};
    }
    void use_simd(bool on) { call("ZXSetUseSIMD", {integer{on}}); }

    static engine_options with_checks()
    {
        engine_options options;
        options.check_read_locks = true;
        options.file_exists = [](const std::string&) { return true; };
        return options;
    }

  private:
    engine engine_;
    std::optional<library> library_;
};

/// An image of element type T filled from `pixels` (x fastest); the rest stays zero.
template <class T>
image_ref image_of(const std::vector<T>& pixels, std::vector<std::uint32_t> sizes)
{
    auto made = image::create("test", static_cast<std::uint32_t>(qorv::dm::data_type_of<T>), sizes);
    std::memcpy(made->data(), pixels.data(), std::min(pixels.size(), made->count()) * sizeof(T));
    return made;
}

template <class T>
std::vector<T> pixels_of(const image_ref& picture)
{
    EXPECT_EQ(picture->code(), static_cast<std::uint32_t>(qorv::dm::data_type_of<T>));
    const auto* data = static_cast<const T*>(picture->data());
    return {data, data + picture->count()};
}

/// All bytes of a contiguous image.
inline std::vector<unsigned char> bytes_of(const image_ref& picture)
{
    const auto* data = static_cast<const unsigned char*>(picture->data());
    return {data, data + picture->count() * picture->type().bytes};
}

/// The hash of some bytes, for comparing platforms.
template <class Bytes>
std::uint64_t digest(const Bytes& bytes)
{
    support::fnv1a hash;
    for (const auto byte : bytes) hash.add(static_cast<unsigned char>(byte));
    return hash.value();
}

/// The hash of all pixels, for comparing platforms.
inline std::uint64_t digest(const image_ref& picture) { return digest(bytes_of(picture)); }

}  // namespace script
