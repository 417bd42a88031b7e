// Character tests that do not depend on the locale.
#include <olvex/Chars.h>

int CxIsASCIIDigit(int ch)
{
    return ch >= '0' && ch <= '9';
}

int CxIsLocalDigit(int ch)
{
    return CxIsASCIIDigit(ch);
}

int CxIsASCIIAlpha(int ch)
{
    return (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z');
}

int CxETOA(char *, int length)
{
    return length > 0 ? length : 0;
}
