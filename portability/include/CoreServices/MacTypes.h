// The platform's scalar types and its most basic constants.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef unsigned char UInt8;
typedef signed char SInt8;
typedef unsigned short UInt16;
typedef short SInt16;
#if defined(__LP64__)
typedef unsigned int UInt32;
typedef int SInt32;
#else
typedef unsigned long UInt32;
typedef long SInt32;
#endif
typedef unsigned long long UInt64;
typedef long long SInt64;

typedef SInt16 OSErr;
typedef SInt32 OSStatus;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef FourCharCode ResType;
typedef unsigned char Boolean;
typedef char* Ptr;
typedef Ptr* Handle;
typedef void* LogicalAddress;
typedef long Size;
typedef unsigned long ByteCount;
typedef unsigned long ByteOffset;
typedef unsigned long ItemCount;
typedef UInt32 OptionBits;
typedef SInt32 Duration;
typedef UInt16 UniChar;
typedef unsigned long UniCharCount;
typedef UInt32 TextEncoding;
#if defined(__LP64__)
typedef void* SRefCon;
typedef void* URefCon;
#else
typedef SInt32 SRefCon;
typedef UInt32 URefCon;
#endif

#pragma pack(push, 2)
typedef struct UnsignedWide {
    UInt32 lo;
    UInt32 hi;
} UnsignedWide;

typedef struct ProcessSerialNumber {
    UInt32 highLongOfPSN;
    UInt32 lowLongOfPSN;
} ProcessSerialNumber;

typedef struct Point {
    short v;
    short h;
} Point;
#pragma pack(pop)
typedef ProcessSerialNumber* ProcessSerialNumberPtr;

enum { noErr = 0, kNilOptions = 0, kVariableLengthArray = 1 };
#define kInvalidID 0

#if defined(__cplusplus)
static_assert(sizeof(UInt32) == 4 && sizeof(SInt32) == 4, "32-bit scalars");
static_assert(sizeof(UInt64) == 8 && sizeof(Size) == sizeof(void*), "64-bit and pointer-sized scalars");
static_assert(sizeof(ProcessSerialNumber) == 8 && sizeof(UnsignedWide) == 8, "8-byte records");
static_assert(alignof(ProcessSerialNumber) == 2 && alignof(UnsignedWide) == 2, "packed");
static_assert(offsetof(UnsignedWide, hi) == 4, "little-endian");
static_assert(sizeof(Point) == 4 && alignof(Point) == 2 && offsetof(Point, h) == 2, "two shorts");
#endif
