#pragma once

namespace kordel::test {

// Whether the tests run under AddressSanitizer, whose quarantine keeps
// freed memory: measurements of a process's peak memory mean little then.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kUnderAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kUnderAddressSanitizer = true;
#else
constexpr bool kUnderAddressSanitizer = false;
#endif
#else
constexpr bool kUnderAddressSanitizer = false;
#endif

} // namespace kordel::test
