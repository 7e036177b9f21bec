#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "host/files/pending_file.h"
#include "host/files/png_text.h"
#include "host/pictures/figure.h"
#include "host/pictures/picture.h"

namespace zentrix::host {

/// Writes a PNG file row by row; memory for a few rows, whatever the picture's size.
class png_writer
{
  public:
    /// Starts the picture. `channels` is 1 (grey) or 3 (red, green, blue), 8 bits each. The texts are written in front
    /// of the pixels. `output` must outlive this object.
    /// Throws  file_error when the disk is full; std::bad_alloc
    png_writer(pending_file& output, int width, int height, int channels, const picture_texts& texts = {});
    ~png_writer();
    png_writer(const png_writer&) = delete;
    png_writer& operator=(const png_writer&) = delete;

    /// The next row, from the top: width * channels bytes. Throws as the constructor
    void write_row(std::span<const std::uint8_t> row);
    /// Ends the picture after its last row; `output` still has to be committed. Throws as the constructor
    void finish();

  private:
    struct compressor;

    void write_chunk(const char (&type)[5], std::span<const std::uint8_t> data);
    void compress(std::span<const std::uint8_t> bytes, int flush);

    pending_file& output_;
    std::unique_ptr<compressor> compressor_;
    std::size_t pixel_bytes_;
    std::vector<std::uint8_t> former_row_, filtered_, best_;
};

/// Writes a picture as .png. Throws  file_error, std::bad_alloc
void write_png(const std::filesystem::path& file, const picture& shown, const picture_texts& texts = {});

/// Writes the picture of an image as .png, row by row. The texts have the range that it shows in addition: see
/// texts_of.
/// Throws  file_error, also for what figure refuses; std::bad_alloc
shown_range write_png(const std::filesystem::path& file, const image& pixels, const figure_style& style,
                      const picture_texts& texts = {});

/// The same without annotations, between the automatic limits.
void write_png(const std::filesystem::path& file, const image& pixels, display_mode mode,
               palette shades = palette::grey);

/// The range as texts of a picture: "Shown" is "phase"; "Limits" are "-0.25,1.5", unless it is in cyclic colours.
picture_texts texts_of(const shown_range& range);

/// The limits that the texts of a picture name.
/// Throws  file_error when it is no picture of this program, has no limits, or shows something else
grey_limits limits_in(const std::filesystem::path& png, const shown_range& wanted);

}  // namespace zentrix::host
