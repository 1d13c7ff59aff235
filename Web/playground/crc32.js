// The checksum of zip archives, also of links: CRC-32, reflected, polynomial 0xEDB88320.

const TABLE = Uint32Array.from({ length: 256 }, (_, byte) => {
    let sum = byte;
    for (let bit = 0; bit < 8; ++bit) sum = sum & 1 ? (sum >>> 1) ^ 0xedb88320 : sum >>> 1;
    return sum;
});

export function crc32(bytes) {
    let sum = 0xffffffff;
    for (const byte of bytes) sum = TABLE[(sum ^ byte) & 0xff] ^ (sum >>> 8);
    return (sum ^ 0xffffffff) >>> 0;
}
