#include "objects.h"

#include <cmath>
#include <cstring>

namespace macdoubles {
namespace {

struct Converter {
  id operator()(std::monostate) const { return [NSNull null]; }
  id operator()(bool truth) const { return [NSNumber numberWithBool:truth]; }
  id operator()(const std::string& text) const { return ToNSString(text); }

  id operator()(double number) const {
    const bool is_whole = std::floor(number) == number && std::fabs(number) < 9e15;
    return is_whole ? [NSNumber numberWithLongLong:static_cast<long long>(number)]
                    : [NSNumber numberWithDouble:number];
  }

  id operator()(const Value::List& items) const {
    NSMutableArray* array = [NSMutableArray array];
    for (const Value& item : items) [array addObject:ToObject(item)];
    return array;
  }

  id operator()(const Value::Object& members) const {
    NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
    for (const auto& [key, value] : members) {
      [dictionary setObject:ToObject(value) forKey:ToNSString(key)];
    }
    return dictionary;
  }
};

Value ValueOfNumber(NSNumber* number) {
  // Foundation's booleans are numbers of the size of a character.
  if (std::strchr("cCB", *[number objCType])) return [number boolValue] != NO;
  return [number doubleValue];
}

Value ValueOfArray(NSArray* array) {
  Value::List items;
  for (id item in array) items.push_back(ToValue(item));
  return items;
}

Value ValueOfDictionary(NSDictionary* dictionary) {
  Value::Object members;
  for (NSString* key in dictionary) members[ToText(key)] = ToValue([dictionary objectForKey:key]);
  return members;
}

}  // namespace

std::string ToText(NSString* text) {
  if (!text) return {};
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding];
  std::string whole(static_cast<const char*>([data bytes]), [data length]);
  [pool release];
  return whole;
}

NSString* ToNSString(const Value& value) {
  if (value.IsNull()) return nil;
  const std::string text = value.Text();
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}

id ToObject(const Value& value) { return value.Visit(Converter{}); }

Value ToValue(id object) {
  if (!object || object == [NSNull null]) return {};
  if ([object isKindOfClass:[NSString class]]) return ToText(object);
  if ([object isKindOfClass:[NSNumber class]]) return ValueOfNumber(object);
  if ([object isKindOfClass:[NSArray class]]) return ValueOfArray(object);
  if ([object isKindOfClass:[NSDictionary class]]) return ValueOfDictionary(object);
  return [NSStringFromClass([object class]) UTF8String];
}

}  // namespace macdoubles
