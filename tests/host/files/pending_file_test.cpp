#include "host/files/pending_file.h"

#include <gtest/gtest.h>

#include "host/files/file_error.h"
#include "tests/support/same_bytes.h"
#include "tests/support/scratch.h"

#ifndef _WIN32
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#endif

using namespace zentrix::host;
using support::scratch_folder;
namespace fs = std::filesystem;
using names = std::vector<std::string>;

namespace {

void replace(const fs::path& file, const std::string& contents)
{
    pending_file pending{file};
    pending.write(contents.data(), contents.size());
    pending.commit();
}

}  // namespace

TEST(PendingFile, AppearsWholeOrNotAtAll)
{
    const scratch_folder folder;
    folder.write("a", "former");
    {
        pending_file given_up{folder / "a"}, other{folder / "a"};  // drafts do not collide
        given_up.write("half", 4);
        EXPECT_EQ(folder.read("a"), "former");
    }
    EXPECT_EQ(folder.files(), names{"a"});
    EXPECT_EQ(folder.read("a"), "former");
    replace(folder / "a", "whole");
    EXPECT_EQ(folder.read("a"), "whole");

    const std::string long_name(240, 'n');  // the limit is 255 bytes
    replace(folder / long_name, "long");
    EXPECT_EQ(folder.files(), (names{"a", long_name}));
}

TEST(PendingFile, RefusesWhatItCannotReplaceAndRemovesRemnants)
{
    const scratch_folder folder;
    folder.write("fixed", "fixed");
    fs::permissions(folder / "fixed", fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    fs::create_directory(folder / "folder");
    folder.write(".zentrix-1-1.part", "of a killed process");
    folder.write(".zentrix-notes.part", "of another program");
    const pending_file other{folder / "other"};  // of a live one
    for (const auto& [name, why] : {std::pair{"fixed", "it is read-only"},
                                    {"folder", "it is a folder"},
                                    {"missing/a", "No such file or directory"}})
        EXPECT_EQ(support::message_of([&, file = folder / name] { pending_file{file}; }),
                  (folder / name).string() + ": cannot be written: " + why);
    fs::permissions(folder / "fixed", fs::perms::owner_all);
    EXPECT_EQ(folder.read("fixed"), "fixed");
    const auto left = folder.files();
    ASSERT_EQ(left.size(), 4u);
    EXPECT_NE(left[0], ".zentrix-1-1.part");
    EXPECT_EQ(left[1], ".zentrix-notes.part");
}

TEST(PendingFile, FoldersAreLookedThroughOnce)
{
    const scratch_folder folder, other;
    replace(folder / "a", "a");
    folder.write(".zentrix-1-1.part", "of a process that was killed meanwhile");
    replace(folder / "b", "b");
    EXPECT_EQ(folder.files().size(), 3u) << "looked again, which takes too long in a folder of many results";
    other.write(".zentrix-1-1.part", "");
    replace(other / "a", "a");
    EXPECT_EQ(other.files(), names{"a"});
}

#ifndef _WIN32

TEST(PendingFile, DraftOfALiveProcessIsLeft)
{
    const scratch_folder folder;
    folder.write(".zentrix-1-1.part", "of a live process, which holds a lock");
    const int draft = open((folder / ".zentrix-1-1.part").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(draft, LOCK_EX), 0);
    replace(folder / "a", "a");
    EXPECT_EQ(folder.files(), (names{".zentrix-1-1.part", "a"}));
    close(draft);
}

TEST(PendingFile, KeepsModeAndOwnerAndFollowsLinks)
{
    const scratch_folder folder;
    folder.write("private", "former");
    ASSERT_EQ(chmod((folder / "private").c_str(), 0640), 0);
    if (geteuid() == 0 && chown((folder / "private").c_str(), 1, 2) != 0) GTEST_FAIL();
    struct stat before
    {
    }, after{};
    stat((folder / "private").c_str(), &before);
    fs::create_symlink("private", folder / "link");
    fs::create_symlink("created", folder / "dangling");
    fs::create_symlink("loop", folder / "loop");
    replace(folder / "link", "new");
    replace(folder / "dangling", "new");
    EXPECT_EQ(folder.read("private") + folder.read("created"), "newnew");
    EXPECT_TRUE(fs::is_symlink(folder / "link") && fs::is_symlink(folder / "dangling"));
    stat((folder / "private").c_str(), &after);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(std::pair(after.st_uid, after.st_gid), std::pair(before.st_uid, before.st_gid));
    EXPECT_EQ(support::message_of([&] { replace(folder / "loop", ""); }),
              (folder / "loop").string() + ": cannot be written: Too many levels of symbolic links");
}

TEST(PendingFile, ReservingMoreThanTheDiskHasIsAnError)
{
    constexpr std::uint64_t too_much = std::uint64_t{1} << 60;
    const scratch_folder folder;
    folder.write("former", "former");
    const int probe = open((folder / "former").c_str(), O_WRONLY);
    const int done = fallocate(probe, FALLOC_FL_KEEP_SIZE, 0, too_much), problem = errno;
    close(probe);
    if (done == 0 || (problem != ENOSPC && problem != EDQUOT && problem != EFBIG))
        GTEST_SKIP() << "this file system does not report a full disk when space is reserved";
    for (const char* name : {"new", "former"})
        EXPECT_THROW(pending_file{folder / name}.reserve(too_much), file_error) << name;
    EXPECT_EQ(folder.files(), names{"former"});
    EXPECT_EQ(folder.read("former"), "former");
}

TEST(PendingFile, IsRemovedByTheSignalsThatEndAProcess)
{
    const scratch_folder folder;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
        const pid_t child = fork();
        if (child == 0) {
            std::signal(signal, SIG_DFL);
            const rlimit no_core{0, 0};
            setrlimit(RLIMIT_CORE, &no_core);
            remove_pending_files_on_signals();
            const pending_file first{folder / "a"}, second{folder / "b"};
            raise(signal);
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal);
        EXPECT_EQ(folder.files(), names{});
    }
}

TEST(PendingFile, BeyondTheLimitOfFileSizesIsAnError)
{
    const scratch_folder folder;
    const pid_t child = fork();
    if (child == 0) {
        const rlimit small{1000, 1000};
        setrlimit(RLIMIT_FSIZE, &small);
        remove_pending_files_on_signals();
        const std::string text = support::message_of([&] { replace(folder / "a", std::string(2000, 'a')); });
        _exit(text.ends_with("File too large") ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(folder.files(), names{});
}

#endif
