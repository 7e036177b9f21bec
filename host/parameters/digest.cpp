#include "host/parameters/digest.h"

#include <fstream>
#include <new>
#include <vector>

#include "host/files/file_error.h"
#include "host/files/input_file.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace zentrix::host {

namespace {

std::string hexadecimal(const XXH128_hash_t& hash)
{
    XXH128_canonical_t bytes;
    XXH128_canonicalFromHash(&bytes, hash);
    std::string text;
    for (const unsigned char byte : bytes.digest) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 15];
    }
    return text;
}

}  // namespace

fingerprint fingerprint_of(const std::filesystem::path& file)
{
    std::ifstream stream = open_input(file);
    const std::unique_ptr<XXH3_state_t, decltype(&XXH3_freeState)> state{XXH3_createState(), &XXH3_freeState};
    if (!state) throw std::bad_alloc{};
    XXH3_128bits_reset(state.get());
    fingerprint found;
    std::vector<char> block(1 << 16);
    do {
        stream.read(block.data(), static_cast<std::streamsize>(block.size()));
        const auto count = static_cast<std::size_t>(stream.gcount());
        XXH3_128bits_update(state.get(), block.data(), count);
        found.bytes += count;
    } while (stream);
    if (stream.bad()) throw file_error{file, "cannot be read"};
    found.digest = "xxh128:" + hexadecimal(XXH3_128bits_digest(state.get()));
    return found;
}

}  // namespace zentrix::host
