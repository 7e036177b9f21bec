// The file of the typeface as it is installed on the build machine, ZENTRIX_FONT. The assembler includes it, because a
// compiler takes long for an array of this length.
#ifdef _WIN32
#define READ_ONLY_DATA ".section .rdata,\"dr\"\n"
#else
#define READ_ONLY_DATA ".section .rodata\n"
#endif

// NOLINTNEXTLINE(hicpp-no-assembler): no instruction, data only
__asm__(READ_ONLY_DATA
        ".global zentrix_font_file\n"
        ".balign 16\n"
        "zentrix_font_file:\n"
        ".incbin \"" ZENTRIX_FONT
        "\"\n"
        ".text\n");
