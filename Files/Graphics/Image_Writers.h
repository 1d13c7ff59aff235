#pragma once
// Blocks of 32-bit pixels, top row first without padding, as images.

// A 24-bit BMP in memory; the caller frees it with MemoryManager::Free. Null when it cannot be allocated.
// _bytesPerPixel is the distance between source pixels; the first three bytes of each are stored, in their order.
// Rows are stored bottom-up and, unlike the format's rule, without padding. A width or height below 1 gives the header
// alone. *out_pFileSize receives 54 + 3 * width * height first of all, or 0 when that is no int.
void* CreateBMP(void* _pBuffer, int _width, int _height, int* out_pFileSize, int _bytesPerPixel);

// An RGBA PNG in the save area, directories made as needed. 1 when done; 0 on any failure, told on the debug console
// except when the file cannot be opened. A short write is not noticed here: the file layer knows. A module that was
// built with CAMERA_PNG=OFF leaves the function to the host.
int WritePNG32(char* _pFilename, void* _pBuffer, int _width, int _height);
