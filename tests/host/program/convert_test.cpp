#include <gtest/gtest.h>

#include "tests/host/program/run.h"

using support::workbench;

TEST(Convert, TranslatesFilesWordsAndOptions)
{
    const workbench bench;
    bench.folder().write("ours.json", R"({"kv": 300, "C1": -62, "A1": [14, 35], "C3": 0.15, "B2": "380@110"})");
    bench.folder().write("bad.json", R"({"C1": -62, "A7": 1})");
    const struct
    {
        std::string words, outcome;
    } rows[] = {
        {"ours.json --json",
         R"(0 {"kv":{"value":300.0,"unit":"kV"},"C1":{"value":-62.0,"unit":"nm"},)"
         R"("A1":{"modulus":14.0,"unit":"nm","angle":35.0,"angle_unit":"deg"},)"
         R"("B2":{"modulus":380.0,"unit":"nm","angle":110.0,"angle_unit":"deg"},"C3":{"value":0.15,"unit":"mm"}})"
         "\n"},
        {"ours.json --C1 -20 --to polar --unit A",
         "0 notation                     polar\nkv                             300 kV\n"
         "C10                           -200 A\nC12                            140 A\n"
         "phi12                         17.5 deg\nC21                          11400 A\n"
         "phi21                          110 deg\nC30                        1500000 A\n"},
        {"--C1 -62 --to nexus --unit m --json",
         "0 {\"notation\":\"nexus\",\"c_1_0\":{\"magnitude\":-6.2e-08,\"units\":\"m\"}}\n"},
        {"C10=-620A C12=14nm phi12=17.5deg",
         "0 C1                             -62 nm\nA1                           14@35 nm\n"},
        {"--A1 14@35 --to corrector --clockwise --zero 90 --angle rad",
         "0 notation                 corrector\nframe         {\"clockwise\":true,\"zero\":90.0}\n"
         "A1                              14 nm\nphiA1                2.53072741539 rad\n"},
        {"C1=-62 --C1 0", "0 C1                               0 nm\n"},
        {"bad.json", "1 zentrix: bad.json: \"A7\" is not a parameter\n"},
        {"C10=-620", "2 zentrix: C10 needs a unit: C10=-620nm or C10=-620A\n"},
        {"C12",
         "2 zentrix: C12 is not a file. Give a coefficient with its value: NAME=NUMBER or NAME=NUMBERUNIT, such as "
         "C12=140A\n"},
        {"A7", "1 zentrix: A7: there is no such file\n"},
        {"C1=x", "2 zentrix: C1=x: expected NAME=NUMBER or NAME=NUMBERUNIT, such as C10=-62nm\n"},
        {"C1=1 C1=1", "2 zentrix: C1 is given twice\n"},
        {"a.json b.json", "2 zentrix: one file can be converted, not 2\n"},
        {"", "2 zentrix: give a file of parameters, or coefficients\n"},
        {"ours.json --unit A",
         "2 zentrix: --unit, --angle, --clockwise and --zero describe another notation: --to polar, for example\n"},
    };
    for (const auto& [words, outcome] : rows) EXPECT_EQ(bench.zentrix("convert " + words).text(), outcome) << words;

    bench.folder().write("wave.json", R"({"program": {"name": "zentrix"}, "result": {"file": "wave.npy"}})");
    bench.folder().write("wave.npy", "");
    EXPECT_EQ(bench.zentrix("convert C1=-62nm -o wave.json").text(),
              "1 zentrix: wave.json: is the record of wave.npy; choose another name\n");
    EXPECT_EQ(bench.zentrix("convert C1=-62nm -o wave.npy").text(),
              "1 zentrix: wave.npy: cannot be written: expected a name ending in .json\n");

    for (const char* to : {"polar --unit m --angle rad", "cartesian --zero 90", "corrector --clockwise", "nexus"}) {
        ASSERT_EQ(bench.zentrix(std::string{"convert ours.json -o other.json --to "} + to).code, 0);
        EXPECT_EQ(bench.zentrix("convert other.json").text(), bench.zentrix("convert ours.json").text()) << to;
    }
}
