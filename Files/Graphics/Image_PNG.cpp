// The PNG writer, a source of its own: a host with another one builds the module without it.
#include "Files/Graphics/Image_Writers.h"

#include "Files/IO/Debug_Console.h"
#include "Files/IO/Load_Save.h"

#include <csetjmp>
#include <cstddef>
#include <cstdlib>

#include <png.h>

namespace
{

constexpr int PATH_SIZE = 2048;
constexpr char ROWS_FAILED[] = "[write_png_file] Error during writing bytes";

void PNGAPI pngWriteFn(png_structp png_ptr, png_bytep inBytes, png_size_t byteCountToWrite)
{
    _KvFILE* const file = static_cast<_KvFILE*>(png_get_io_ptr(png_ptr));
    if (file != nullptr)
        LoadSave::fwrite(inBytes, 1, static_cast<unsigned>(byteCountToWrite), file);
}

void PNGAPI pngFlushFn(png_structp) {}

bool Report(const char* message)
{
    if (dbg_csol != nullptr)
        dbg_csol->Output(message);
    return false;
}

// The stages of writing a PNG. libpng reports an error by a longjmp to the last setjmp: each stage has its own, keeps
// no local that the jump could lose, and has not returned when libpng jumps.

bool InitIO(png_structp png, _KvFILE* file)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report("[write_png_file] Error during init_io\n");
    png_set_write_fn(png, file, pngWriteFn, pngFlushFn);
    return true;
}

bool WriteHeader(png_structp png, png_infop info, int width, int height)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report("[write_png_file] Error during writing header\n");
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8, PNG_COLOR_TYPE_RGBA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    return true;
}

// Leaves the row table to the caller, who frees it whether libpng jumped or not. A refused table is reported here and
// not through png_error, which would print on the standard error stream, too.
bool WriteRows(png_structp png, void* pixels, int width, int height, png_bytep** rowTable)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report(ROWS_FAILED);
    png_bytep* const rows = static_cast<png_bytep*>(malloc(static_cast<size_t>(height) * sizeof(png_bytep)));
    *rowTable = rows;
    if (rows == nullptr)
        return Report(ROWS_FAILED);
    for (int y = 0; y < height; ++y)
        rows[y] = static_cast<png_bytep>(pixels) + static_cast<size_t>(y) * static_cast<size_t>(width) * 4;
    png_write_image(png, rows);
    return true;
}

bool WriteEnd(png_structp png, png_infop info)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return Report("[write_png_file] Error during end of write");
    png_write_end(png, info);
    return true;
}

bool WriteImage(png_structp png, png_infop info, void* pixels, int width, int height, _KvFILE* file)
{
    png_bytep* rowTable = nullptr;
    const bool written = InitIO(png, file) && WriteHeader(png, info, width, height) &&
                         WriteRows(png, pixels, width, height, &rowTable) && WriteEnd(png, info);
    free(rowTable);
    return written;
}

bool WriteFile(_KvFILE* file, void* pixels, int width, int height)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool written = false;
    if (png == nullptr)
        Report("[write_png_file] png_create_write_struct failed\n");
    else if (info == nullptr)
        Report("[write_png_file] png_create_info_struct failed\n");
    else
        written = WriteImage(png, info, pixels, width, height, file);
    png_destroy_write_struct(&png, &info);
    return written;
}

} // namespace

int WritePNG32(char* _pFilename, void* _pBuffer, int _width, int _height)
{
    char path[PATH_SIZE] = {};
    LoadSave::_GetSaveFileName(path, PATH_SIZE, _pFilename);
    EnsureDirectoryIsCreated(path);
    _KvFILE* const file = LoadSave::fopen(path, "wb");
    if (file == nullptr)
        return 0;
    const bool written = WriteFile(file, _pBuffer, _width, _height);
    LoadSave::fclose(file);
    return written ? 1 : 0;
}
