// The EBCDIC families: single-byte, and double-byte with shift codes. The invariant characters are
// converted by the built-in tables, whatever the code set's own says (see prepareLookup).
#pragma once

#include "ucv/AsciiFamilies.h"
#include "ucv/tables/Ebcdic.h"

namespace olvex::ucv {

class EbcdicFamily {
  public:
    using Place = char;
    using Utf8Side = ShortUtf8;
    using Ucs2Side = Ucs2;

    explicit EbcdicFamily(const uc_ch_t &handle) : table_(handle.table->lookup) {}
    static constexpr bool copiesAscii() { return false; }

  protected:
    static constexpr CodePoint kEbcdicQuestionMark = 0x6F;

    const Lookup &table_;
};

class EbcdicSingleByte : public EbcdicFamily {
  public:
    static constexpr std::size_t kLongest = 1;
    static constexpr bool kHasShifts = false;
    using EbcdicFamily::EbcdicFamily;

    Decoded decode(const char *in, std::size_t) const { return {1, table_.values[byteOf(in[0])]}; }
    const Utf8Bytes &utf8Of(char byte) const { return table_.utf8[byteOf(byte)]; }

    int encode(CodePoint value, char *out, std::size_t room) const
    {
        const int written = encodeByRow(table_, value, out, room);
        if (written != kNoCode || value >= 0x100 || !invar_ucs_to_eb[value]) return written;
        return put(out, room, def_ucs_to_eb[value]); // whatever the table's substitute is
    }

    static int substitute(char *out, std::size_t room)
    {
        return put(out, room, kEbcdicQuestionMark);
    }
};

class EbcdicDoubleByte : public EbcdicFamily {
  public:
    static constexpr std::size_t kLongest = 3; // with a shift code
    static constexpr bool kHasShifts = true;

    explicit EbcdicDoubleByte(uc_ch_t &handle) : EbcdicFamily(handle), handle_(handle) {}

    Decoded decode(const char *in, std::size_t size)
    {
        const CodePoint byte = byteOf(in[0]);
        if (byte == kShiftOut || byte == kShiftIn) {
            handle_.inShift = byte == kShiftOut;
            return {1, kShift};
        }
        return handle_.inShift ? decodeShifted(in, size) : Decoded{1, table_.values[byte]};
    }

    int encode(CodePoint value, char *out, std::size_t room)
    {
        const CodePoint code = codeByRow(table_, value);
        if (code == kHole) return kNoCode;
        return code < 0x100 ? putSingle(code, out, room) : putDouble(code, out, room);
    }

    int substitute(char *out, std::size_t room)
    {
        return putSingle(kEbcdicQuestionMark, out, room);
    }

    // Writes the shift-in that is owed at the end of a text: places written, or -1 for no room.
    static int end(uc_ch_t &handle, char *out, std::size_t room)
    {
        if (!handle.outShift) return 0;
        if (room < 1) return -1;
        handle.outShift = false;
        return put(out, room, kShiftIn);
    }

  private:
    static constexpr CodePoint kShiftOut = 0x0E;
    static constexpr CodePoint kShiftIn = 0x0F;

    Decoded decodeShifted(const char *in, std::size_t size) const
    {
        const CodePoint lead = byteOf(in[0]);
        if (lead < 0x40 || lead > 0xFE) return {1, def_eb_to_ucs[lead]};
        return size < 2 ? kCut : mapped(2, valueByRow(table_, in));
    }

    int putSingle(CodePoint byte, char *out, std::size_t room)
    {
        if (!handle_.outShift) return put(out, room, byte);
        return afterShift(put(out, room, kShiftIn, byte), false);
    }

    int putDouble(CodePoint code, char *out, std::size_t room)
    {
        if (handle_.outShift) return put(out, room, code >> 8, code);
        return afterShift(put(out, room, kShiftOut, code >> 8, code), true);
    }

    // Only what was written changes the state.
    int afterShift(int written, bool shifted)
    {
        if (written != kNoRoom) handle_.outShift = shifted;
        return written;
    }

    uc_ch_t &handle_;
};

} // namespace olvex::ucv
