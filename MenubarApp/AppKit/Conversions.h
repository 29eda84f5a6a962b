#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace menubar {

/// The one place where texts and paths cross between C++ and Objective-C. Any thread.

/// Never nil. Ill-formed UTF-8 becomes U+FFFD.
[[nodiscard]] NSString* toNSString(std::string_view utf8);

/// UTF-8; empty for nil. Unpaired surrogates become U+FFFD.
[[nodiscard]] std::string toString(NSString* text);

/// The file URL of an absolute path.
[[nodiscard]] NSURL* toFileURL(std::string_view path);

} // namespace menubar
