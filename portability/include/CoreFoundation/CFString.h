// Strings, which consist of UTF-16 units.
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

/// Returns the constant string for a literal, which must be ASCII. It is valid until the process exits and
/// must not be released.
#define CFSTR(cStr) __CFStringMakeConstantString("" cStr "")
CFStringRef __CFStringMakeConstantString(const char* cStr);

/// Creates a string from a NUL-terminated text in `encoding`. The caller releases it. Returns NULL if the
/// bytes are not valid in the encoding (every byte is valid in Mac Roman) or the encoding is not supported.
/// `cStr` must not be NULL.
CFStringRef CFStringCreateWithCString(CFAllocatorRef alloc, const char* cStr, CFStringEncoding encoding);

/// Writes the whole NUL-terminated string into `buffer` of `bufferSize` bytes. Returns false if the string
/// does not fit or `encoding` cannot express it. In that case `buffer` contains the empty string if
/// `bufferSize` is at least 1. The string is never truncated.
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);

/// Returns the number of UTF-16 units.
CFIndex CFStringGetLength(CFStringRef theString);

/// Returns the largest number of bytes that `length` UTF-16 units can need in `encoding`, without the
/// terminating NUL. Returns kCFNotFound if the number is too large.
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

/// Copies the units of `range`, which must lie inside the string.
void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer);

/// Compares two strings. Without options, compares their UTF-16 units.
CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2,
                                   CFStringCompareFlags compareOptions);

/// Returns the encoding of texts without a stated encoding: Mac Roman.
CFStringEncoding CFStringGetSystemEncoding(void);

/// Returns the Mac encoding that is most similar to `encoding`. Returns Unicode for all Unicode encodings,
/// and kCFStringEncodingInvalidId if there is none.
CFStringEncoding CFStringGetMostCompatibleMacStringEncoding(CFStringEncoding encoding);

/// Returns Foundation's number for the encoding.
unsigned long CFStringConvertEncodingToNSStringEncoding(CFStringEncoding encoding);

CF_EXTERN_C_END
