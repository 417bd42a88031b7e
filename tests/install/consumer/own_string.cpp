// Names that the tracing front end has too. They must neither take the place of the library's nor
// be replaced by them.
#include <cstddef>

class String {
  public:
    String(const char *text);
    ~String();
    String &concat(const char *text);
    const char *text_;
};

String::String(const char *) : text_("a String of its own") {}

String::~String() {}

String &String::concat(const char *)
{
    return *this;
}

char *trim(char *)
{
    return nullptr;
}

const char *unrelatedPart()
{
    char text[] = " x ";
    static String string("other");
    return trim(text) ? "the library's trim" : string.concat("x").text_;
}
