#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>

#include "host/batch/file_runner.h"
#include "host/batch/progress.h"
#include "host/batch/worker_process.h"

using namespace zentrix::host;

namespace {

/// What workers do: "die" ends the process.
file_outcome work(const file_task& task)
{
    if (task.input == "die") std::_Exit(7);
    if (task.input == "throw") throw std::runtime_error{"no such luck"};
    std::cerr << "note on " << task.input << "\n";
    return {file_state::done, task.input + task.outputs.at(0) + "\n", "", {}};
}

/// input -> "state text|notes", in one line.
using outcomes = std::map<std::string, std::string>;

outcomes run(const std::vector<std::string>& inputs, int workers)
{
    std::vector<file_task> tasks;
    for (const auto& input : inputs) tasks.push_back({input, {"-\n\xC3\xA9\""}});
    outcomes found;
    const auto listen = [&](const file_task& task, const file_outcome& outcome) {
        found[task.input] = std::to_string(static_cast<int>(outcome.state)) + " " + outcome.text + "|" + outcome.notes;
    };
    if (workers == 0)
        process_here(tasks, work, listen);
    else
        process_in_workers(tasks, workers, {"some", "w\xC3\xB6rds"}, listen);
    return found;
}

}  // namespace

TEST(FileRunner, AFailureOrTheEndOfAWorkerConcernsOneFileOnly)
{
    outcomes expected{{"throw", "2 no such luck|"}};
    for (int i = 0; i < 20; ++i) {
        const std::string name = "f" + std::to_string(i);
        expected[name] = "0 " + name + "-\n\xC3\xA9\"\n|note on " + name + "\n";
    }
    std::vector<std::string> inputs;
    for (const auto& [input, outcome] : expected) inputs.push_back(input);
    EXPECT_EQ(run(inputs, 0), expected);
    inputs.insert(inputs.begin() + 3, "die");
    expected["die"] = "2 die: the process that was working on it ended with code 7|";
    for (const int workers : {1, 3, 40}) EXPECT_EQ(run(inputs, workers), expected) << workers;
}

TEST(Progress, TheBarSaysWhatIsLeft)
{
    EXPECT_EQ(bar_text(0, 10, 0, 0), "[--------------------] 0 of 10 files");
    EXPECT_EQ(bar_text(5, 10, 1, 2), "[##########----------] 5 of 10 files, 1 failed, 2.50 per second, 2 s left");
    EXPECT_EQ(bar_text(1, 1000, 0, 10), "[--------------------] 1 of 1000 files, 0.10 per second, 3 h left");
    EXPECT_EQ(bar_text(10, 10, 0, 0.5), "[####################] 10 of 10 files, 20 per second");
}

/// This program starts itself as its workers.
int main(int argc, char** argv)
{
    if (argc == 2 && std::string{argv[1]} == worker_argument) {
        if (read_words_of_worker() != std::vector<std::string>{"some", "w\xC3\xB6rds"}) return 9;
        serve_tasks(work);
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
