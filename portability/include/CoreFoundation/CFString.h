// Strings of UTF-16 units.
#pragma once

#include <CoreFoundation/CFBase.h>

typedef UInt32 CFStringEncoding;
enum {
    kCFStringEncodingMacRoman = 0,
    kCFStringEncodingUnicode = 0x0100,
    kCFStringEncodingUTF16 = 0x0100,
    kCFStringEncodingISOLatin1 = 0x0201,
    kCFStringEncodingWindowsLatin1 = 0x0500,
    kCFStringEncodingASCII = 0x0600,
    kCFStringEncodingUTF8 = 0x08000100
};
#define kCFStringEncodingInvalidId (0xFFFFFFFFU)

typedef CFOptionFlags CFStringCompareFlags;
enum {
    kCFCompareCaseInsensitive = 1,
    kCFCompareBackwards = 4,
    kCFCompareAnchored = 8,
    kCFCompareNonliteral = 16,
    kCFCompareLocalized = 32,
    kCFCompareNumerically = 64
};

CF_EXTERN_C_BEGIN

CFTypeID CFStringGetTypeID(void);

/// The constant string of a literal in plain ASCII. It lives as long as the program and needs no release.
#define CFSTR(cStr) __CFStringMakeConstantString("" cStr "")
CFStringRef __CFStringMakeConstantString(const char* cStr);

/// The string of a zero-terminated text in `encoding`; the caller releases it. NULL when the bytes are not
/// valid in the encoding (every byte is valid in Mac Roman) or the encoding is not supported. `cStr` must not
/// be NULL.
CFStringRef CFStringCreateWithCString(CFAllocatorRef alloc, const char* cStr, CFStringEncoding encoding);

/// Writes the whole string with a terminating zero into `buffer` of `bufferSize` bytes. False when it does
/// not fit, or `encoding` cannot express it: the buffer then begins with a zero, if it has room for one;
/// nothing is cut off.
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);

/// The number of UTF-16 units.
CFIndex CFStringGetLength(CFStringRef theString);

/// The most bytes that `length` UTF-16 units can need in `encoding`, without a terminating zero; kCFNotFound
/// when the number is not representable.
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

/// Copies the units of `range`, which must lie inside the string.
void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer);

/// Order of two strings; without options by their UTF-16 units.
CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2,
                                   CFStringCompareFlags compareOptions);

/// The encoding of texts that name none: Mac Roman.
CFStringEncoding CFStringGetSystemEncoding(void);

/// The Mac encoding nearest to `encoding`; Unicode for all its forms; kCFStringEncodingInvalidId when there
/// is none.
CFStringEncoding CFStringGetMostCompatibleMacStringEncoding(CFStringEncoding encoding);

/// Foundation's number of the encoding.
unsigned long CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding);

CF_EXTERN_C_END
