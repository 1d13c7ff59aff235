#include "Runner/Draw/Png_Reader.h"

#include "Runner/Base/Packed_Files.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

namespace Runner
{
static_assert(PICTURE_SIDE_LIMIT == 8192, "a message below names it");

namespace
{
struct CloseFile
{
    void operator()(FILE* file) const { fclose(file); }
};

// The state of one read. libpng leaves a failed call by longjmp: what must outlive the jump is here, outside of the
// function that calls setjmp.
struct Reading
{
    FILE* file = nullptr;
    png_structp png = nullptr;
    png_infop info = nullptr;
    Picture* picture = nullptr;
    std::vector<png_bytep> rows;
    char problem[200] = "";

    Reading() = default;
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() { png_destroy_read_struct(&png, &info, nullptr); }
};

[[noreturn]] void Fail(png_structp png, png_const_charp message)
{
    auto& reading = *static_cast<Reading*>(png_get_error_ptr(png));
    snprintf(reading.problem, sizeof reading.problem, "%s", message);
    png_longjmp(png, 1);
}

void IgnoreWarning(png_structp, png_const_charp) {}

void ReadBytes(png_structp png, png_bytep out, size_t count)
{
    auto& reading = *static_cast<Reading*>(png_get_io_ptr(png));
    if (fread(out, 1, count, reading.file) != count)
        png_error(png, ferror(reading.file) ? "it cannot be read" : "it ends too early");
}

void AskForRgba8(png_structp png, png_infop info)
{
    png_set_expand(png); // palettes, few-bit greys, a transparent colour
    png_set_scale_16(png);
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
}

void AllocateRows(Reading& reading)
{
    Picture& picture = *reading.picture;
    picture.width = static_cast<int>(png_get_image_width(reading.png, reading.info));
    picture.height = static_cast<int>(png_get_image_height(reading.png, reading.info));
    picture.rgba.resize(picture.Offset(0, picture.height));
    for (int y = 0; y < picture.height; y++)
        reading.rows.push_back(picture.rgba.data() + picture.Offset(0, y));
}

// The function that calls setjmp: it has no local variable with a destructor, which a jump would skip.
bool Decode(Reading& reading)
{
    if (setjmp(png_jmpbuf(reading.png)))
        return false;
    png_set_read_fn(reading.png, &reading, ReadBytes);
    // Chunks that the pixels do not depend on are skipped. libpng takes and clears memory of the length that a chunk
    // claims, which a few bytes of a file can make two gigabytes.
    png_set_keep_unknown_chunks(reading.png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(reading.png, reading.info);
    if (png_get_image_width(reading.png, reading.info) > PICTURE_SIDE_LIMIT ||
        png_get_image_height(reading.png, reading.info) > PICTURE_SIDE_LIMIT)
        png_error(reading.png, "it is too large: a side can have 8192 pixels");
    AskForRgba8(reading.png, reading.info);
    AllocateRows(reading);
    if (png_get_rowbytes(reading.png, reading.info) != reading.picture->Offset(0, 1))
        png_error(reading.png, "its pixels have an unknown form");
    png_read_image(reading.png, reading.rows.data());
    png_read_end(reading.png, nullptr);
    return true;
}

bool DecodeFile(FILE* file, Picture& out, std::string& problem)
try
{
    Reading reading;
    reading.file = file;
    reading.picture = &out;
    reading.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &reading, Fail, IgnoreWarning);
    reading.info = reading.png == nullptr ? nullptr : png_create_info_struct(reading.png);
    if (reading.info == nullptr)
        problem = "there is no memory for it";
    else if (!Decode(reading))
        problem = reading.problem;
    return problem.empty();
}
catch (const std::bad_alloc&)
{
    problem = "there is no memory for it";
    return false;
}

// The stream does not own the content of a packed file, and writes nothing to it.
FILE* OpenToRead(const std::string& file)
{
    const std::vector<uint8_t>* const packed = FindPackedFile(file);
    if (packed == nullptr)
        return fopen(file.c_str(), "rb");
    return fmemopen(const_cast<uint8_t*>(packed->data()), packed->size(), "rb");
}
} // namespace

bool ReadPng(const std::string& file, Picture& out, std::string& error)
{
    out = Picture();
    std::string problem;
    const std::unique_ptr<FILE, CloseFile> opened(OpenToRead(file));
    if (opened == nullptr)
        problem = strerror(errno);
    else if (DecodeFile(opened.get(), out, problem))
        return true;
    out = Picture();
    error = "cannot read the picture \"" + file + "\": " + problem;
    return false;
}
} // namespace Runner
