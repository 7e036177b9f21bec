#include "host/engine/library_search.h"

#include "tests/support/same_bytes.h"

#include <gmock/gmock.h>
#include <cstdlib>

namespace {

using zentrix::host::find_library_file;

void set_environment(const char* value)
{
#ifdef _WIN32
    _putenv_s("ZENTRIX_LIBRARY", value);
#else
    setenv("ZENTRIX_LIBRARY", value, 1);
#endif
}

TEST(LibrarySearch, UsesTheEnvironmentOrTheProgramsOwnFolder)
{
    set_environment("named.so");
    EXPECT_EQ(find_library_file(), "named.so");
    set_environment("");
    // The build has the library in the folder above this program, which must not be searched.
    EXPECT_THAT(support::message_of(find_library_file), testing::HasSubstr("does not exist"));
}

}  // namespace
