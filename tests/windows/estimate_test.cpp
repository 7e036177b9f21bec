// Microscope > Estimate: the search runs while the windows stay usable; its result is in the panel's tags.
#include "tests/windows/at_the_panel.h"

#include <gmock/gmock.h>

#include <chrono>

#include "host/parameters/json_file.h"
#include "host/windows/resource.h"

namespace windows_tests {
namespace {

using namespace std::chrono_literals;
using zentrix::lens::coefficient;
using clock = std::chrono::steady_clock;

constexpr int size = 192;
constexpr char stopped[] = "Stopped. The coefficients stay as they are.";

/// A phase object without symmetry.
std::complex<float> specimen_at(int x, int y)
{
    double phase = 0;
    for (int i = 0; i < 60; ++i) {
        const double dx = x - (i * 37 + i * i * 11) % size, dy = y - (i * 53 + i * i * 7) % size;
        phase += 0.9 * std::exp(-(dx * dx + dy * dy) / (2 * (1.2 + 0.05 * (i % 9))));
    }
    return std::complex<float>{std::polar(1.0, phase)};
}

class at_an_estimate : public at_the_panel
{
  protected:
    using at_the_panel::choose;

    /// Opens the dialog in front of the specimen, seen with C1 = -40 nm and A1 = 9 nm at 30 degrees.
    void open()
    {
        support::write_wave(bench_ / "wave.npy", size, size, specimen_at);
        bench_.zentrix("aberrate wave.npy -o seen.npy --kv 300 --pixel 0.05 --C1 -40 --A1 9@30");
        open(read_npy(bench_ / "seen.npy"));
    }
    void open(const image_ref& wave)
    {
        panel_program_options options;
        options.quit_after_ms = 600000;  // no message boxes
        options.input = recorded_input{"seen.npy", {}};
        program_.reset();
        library_.emplace(engine_, ZENTRIX_LIBRARY_FILE);
        program_.emplace(engine_, wave, microscope{300, 0.05, {}, false}, options);
        program_->show();
        settle();
        choose(IDM_ESTIMATE);
    }
    /// Handles messages until the dialog says something else than that it searches. Returns what.
    std::string outcome()
    {
        for (const auto limit = clock::now() + 60s; text() == "Searching ..." && clock::now() < limit; Sleep(5))
            settle();
        return text();
    }
    /// Handles messages until the wave window shows another picture.
    void wait_for_preview()
    {
        const auto before = shown();
        while (shown() == before && text() == "Searching ...") settle();
        EXPECT_NE(shown(), before);
    }

    HWND dialog() { return program_->estimates()->handle(); }
    std::string text() { return control{GetDlgItem(dialog(), IDC_ESTIMATE_TEXT)}.text(); }
    void press(int button) { SendMessageW(dialog(), WM_COMMAND, static_cast<WPARAM>(button), 0); }
    void choose(int item) { SendMessageW(program_->wave_window().handle(), WM_COMMAND, static_cast<WPARAM>(item), 0); }
    void tick_only(std::initializer_list<coefficient> wanted)
    {
        for (const auto& about : zentrix::lens::all_coefficients)
            CheckDlgButton(dialog(), IDC_FREE + static_cast<int>(about.which),
                           std::ranges::find(wanted, about.which) == wanted.end() ? BST_UNCHECKED : BST_CHECKED);
    }
    zentrix::lens::polar value_of(coefficient which) { return program_->handler().coefficients()[which]; }
};

TEST_F(at_an_estimate, ResultIsInTheKnobsAndCanBeTakenBack)
{
    open();
    tick_only({coefficient::C1, coefficient::A1});
    press(IDOK);
    const std::string said = outcome();
    EXPECT_NE(said.find("starts agree"), std::string::npos) << said;
    EXPECT_NEAR(value_of(coefficient::C1).modulus, -40, 0.3);
    EXPECT_NEAR(value_of(coefficient::A1).modulus, 9, 0.3);
    EXPECT_NEAR(value_of(coefficient::A1).angle_degrees, 30, 1.5);
    choose(IDM_UNDO);
    EXPECT_EQ(value_of(coefficient::C1).modulus, 0);
    EXPECT_EQ(value_of(coefficient::A1).modulus, 0);
    tick_only({coefficient::C1});
    press(IDOK);
    const std::string unknown = outcome();
    choose(IDM_UNDO);
    CheckDlgButton(dialog(), IDC_NO_ENVELOPE, BST_CHECKED);
    press(IDOK);
    EXPECT_NE(outcome(), unknown) << "the envelope is part of the uncertainty";
}

TEST_F(at_an_estimate, ShowsItsBestPictureAndCanBeStopped)
{
    open();
    const auto before = shown();
    const HWND same = dialog();
    press(IDOK);
    wait_for_preview();
    choose(IDM_ESTIMATE);  // a second time: shows the same dialog, whose search continues
    EXPECT_EQ(dialog(), same);
    EXPECT_EQ(text(), "Searching ...");
    press(IDCANCEL);
    EXPECT_EQ(outcome(), stopped);
    EXPECT_EQ(value_of(coefficient::C1).modulus, 0);
    EXPECT_EQ(shown(), before);
    press(IDCANCEL);
    EXPECT_FALSE(IsWindowVisible(dialog()));
}

TEST_F(at_an_estimate, StopsAtAnEditInThePanel)
{
    open();
    press(IDOK);
    wait_for_preview();
    auto edited = program_->handler().coefficients();
    edited[coefficient::C1].modulus = 5;
    program_->handler().set(edited, program_->handler().scope());
    EXPECT_EQ(outcome(), stopped);
    EXPECT_EQ(value_of(coefficient::C1).modulus, 5);
}

TEST_F(at_an_estimate, ApplyAppliesWhatTheKnobsShow)
{
    open();
    const auto before = result();
    press(IDOK);
    wait_for_preview();
    of_panel(IDOK).send(BM_CLICK);
    EXPECT_EQ(outcome(), stopped);
    EXPECT_LT(support::largest_difference(result(), before), 1e-5);
    ASSERT_EQ(program_->handler().applied().size(), 1u);
    EXPECT_TRUE(program_->handler().applied()[0].first == zentrix::lens::aberrations{});
}

TEST_F(at_an_estimate, TheRecordOfASavedWaveMakesThatWave)
{
    open();
    of_page(0, 5003).type("-7");
    press(IDOK);
    wait_for_preview();
    choose(IDM_SAVE, "saved.npy");
    const auto saved = support::pixels_of<complex>(bench_ / "saved.npy");
    const std::vector<std::string> words = read_json(bench_ / "saved.json")["command"];
    EXPECT_EQ(bench_.zentrix(std::vector(words.begin() + 1, words.end())).code, 0);
    EXPECT_TRUE(support::same_bytes(saved, support::pixels_of<complex>(bench_ / "saved.npy")));
    EXPECT_EQ(outcome(), stopped);
}

TEST_F(at_an_estimate, EndsAtOnceWithTheProgram)
{
    open();
    press(IDOK);
    wait_for_preview();
    const auto start = clock::now();
    program_.reset();
    EXPECT_LT(clock::now() - start, 500ms);
}

TEST_F(at_an_estimate, ChangesNothingWithoutAnAnswer)
{
    for (const auto& [length, answer] : {std::pair{192U, "Nothing is determined."}, {32U, "at least 64 x 64 pixels"}}) {
        const std::uint32_t sizes[] = {length, length};
        const auto flat = image::create("flat", code_of(element_class::complex, 8), sizes);
        std::fill_n(static_cast<std::complex<float>*>(flat->data()), flat->count(), std::complex<float>{1});
        open(flat);
        tick_only({});
        press(IDOK);
        EXPECT_EQ(text(), "Tick the coefficients to search.");
        tick_only({coefficient::C1});
        press(IDOK);
        EXPECT_THAT(outcome(), testing::HasSubstr(answer));
        EXPECT_EQ(value_of(coefficient::C1).modulus, 0);
    }
}

}  // namespace
}  // namespace windows_tests
