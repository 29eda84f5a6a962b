// The app's defaults domain, read and written as the file that it is. NSUserDefaults compares dates by the second and
// would overlook for good what another process writes in the second in which it last looked.
#include "MenubarApp/AppKit/Desktop.h"

#include "MenubarApp/AppKit/Conversions.h"
#include "MenubarApp/Commands/log.h"
#include "MenubarApp/Platform/ProcessEnvironment.h"
#include "MenubarApp/Platform/UserDefaults.h"

namespace menubar {

namespace {

NSString* domainFile() {
    NSString* name = [toNSString(UserDefaults::domain(processEnvironment())) stringByAppendingPathExtension:@"plist"];
    return [GSDefaultsRootForUser(NSUserName()) stringByAppendingPathComponent:name];
}

/// Empty when there is no such file or it holds something else.
NSDictionary* readDomain() {
    NSData* data = [NSData dataWithContentsOfFile:domainFile()];
    id content = data == nil ? nil
                             : [NSPropertyListSerialization propertyListWithData:data
                                                                         options:NSPropertyListImmutable
                                                                          format:nullptr
                                                                           error:nullptr];
    return [content isKindOfClass:[NSDictionary class]] ? content : @{};
}

bool writeDomain(NSDictionary* content) {
    [[NSFileManager defaultManager] createDirectoryAtPath:[domainFile() stringByDeletingLastPathComponent]
                              withIntermediateDirectories:YES
                                               attributes:nil
                                                    error:nullptr];
    NSData* data = [NSPropertyListSerialization dataWithPropertyList:content
                                                              format:NSPropertyListXMLFormat_v1_0
                                                             options:0
                                                               error:nullptr];
    return [data writeToFile:domainFile() atomically:YES] != NO;
}

} // namespace

id Desktop::storedDefault(NSString* key) {
    return [readDomain() objectForKey:key];
}

void Desktop::storeDefault(NSString* key, bool value) {
    NSMutableDictionary* content = [NSMutableDictionary dictionaryWithDictionary:readDomain()];
    [content setObject:[NSNumber numberWithBool:value] forKey:key];
    if (!writeDomain(content)) {
        log("cannot write " + toString(domainFile()));
    }
}

} // namespace menubar
