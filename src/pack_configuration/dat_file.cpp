#include "pack_configuration/dat_file.h"

#include "access/crypt_text.h"
#include "access/pack_key.h"
#include "pack_configuration/pack_format_error.h"

#include <cctype>
#include <limits>

namespace zv {

namespace {

constexpr int kPasswordFile = 16;
constexpr std::size_t kPasswordDigit = 16; // the ninth byte
constexpr std::size_t kPasswordDigits = 16;

class DatReader {
public:
    explicit DatReader(std::span<const std::uint8_t> bytes)
        : bytes_(bytes)
    {
    }

    std::int16_t int16(const char* field)
    {
        need(2, field);
        const auto value = static_cast<std::uint16_t>(bytes_[at_] | (bytes_[at_ + 1] << 8));
        at_ += 2;
        return static_cast<std::int16_t>(value);
    }
    std::int32_t int32(const char* field)
    {
        need(4, field);
        std::uint32_t value = 0;
        for (int i = 3; i >= 0; --i)
            value = (value << 8) | bytes_[at_ + static_cast<std::size_t>(i)];
        at_ += 4;
        return static_cast<std::int32_t>(value);
    }
    std::string string(const char* field)
    {
        need(2, field);
        const std::size_t length = bytes_[at_] | (bytes_[at_ + 1] << 8);
        at_ += 2;
        need(length, field);
        std::string text(reinterpret_cast<const char*>(bytes_.data() + at_), length);
        at_ += length;
        return text;
    }
    [[nodiscard]] std::size_t left() const { return bytes_.size() - at_; }

private:
    void need(std::size_t count, const char* field) const
    {
        if (left() < count)
            throw PackFormatError(std::string("The file ends inside the field '") + field + "'.");
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t at_ = 0;
};

class DatWriter {
public:
    void int16(int value)
    {
        if (value < std::numeric_limits<std::int16_t>::min()
            || value > std::numeric_limits<std::uint16_t>::max())
            throw PackFormatError("A 16-bit field is out of range: " + std::to_string(value));
        bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>((value >> 8) & 0xFF));
    }
    void int32(std::int32_t value)
    {
        for (int i = 0; i < 4; ++i)
            bytes.push_back(static_cast<std::uint8_t>((static_cast<std::uint32_t>(value) >> (8 * i)) & 0xFF));
    }
    void string(std::string_view text)
    {
        if (text.size() > std::numeric_limits<std::uint16_t>::max())
            throw PackFormatError("A text is too long for the file.");
        int16(static_cast<int>(text.size()));
        bytes.insert(bytes.end(), text.begin(), text.end());
    }

    std::vector<std::uint8_t> bytes;
};

bool isHexText(std::string_view text)
{
    if (text.size() % 2 != 0)
        return false;
    for (const char c : text)
        if (!std::isxdigit(static_cast<unsigned char>(c)) || std::islower(static_cast<unsigned char>(c)))
            return false;
    return true;
}

std::string upper(std::string text)
{
    for (auto& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

// The smallest record: two empty strings and five 16-bit fields.
constexpr std::size_t kSmallestRecord = 2 + 2 + 5 * 2;

} // namespace

PackPassword passwordOf(std::string_view fileData)
{
    PackPassword password;
    password.present = true;
    password.bytes.fill(0);
    if (fileData.size() < kPasswordDigit + kPasswordDigits)
        return password;
    const auto bytes = hexToBytes(fileData.substr(kPasswordDigit, kPasswordDigits));
    for (std::size_t i = 0; i < bytes.size() && i < password.bytes.size(); ++i) {
        password.bytes[i] = bytes[i];
        if (bytes[i] != 0)
            password.text += static_cast<char>(bytes[i]);
    }
    return password;
}

DatContent readDat(std::span<const std::uint8_t> bytes, const PackProgress& progress)
{
    DatReader in(bytes);
    DatContent content;
    content.header.title = in.string("title");
    content.header.version = in.string("version");
    const std::int32_t count = in.int32("count");
    if (count < 0 || static_cast<std::size_t>(count) > in.left() / kSmallestRecord)
        throw PackFormatError("The number of files (" + std::to_string(count) + ") does not fit the file.");
    for (std::int32_t i = 0; i < count; ++i) {
        PackProperties file;
        file.FileName = modCryptText::DecryptText(in.string("name"), kPackKey);
        const int number = in.int16("number");
        if (number < 0 || number > std::numeric_limits<std::uint8_t>::max())
            throw PackFormatError("The file number " + std::to_string(number) + " is out of range.");
        file.FileNumber = static_cast<std::uint8_t>(number);
        file.FileIndex = static_cast<std::uint16_t>(in.int16("index"));
        file.FileSize = static_cast<std::uint16_t>(in.int16("size"));
        file.FileChunk = static_cast<std::uint16_t>(in.int16("chunk"));
        const std::string data = modCryptText::DecryptText(in.string("data"), kPackKey);
        file.FileMaxBytes = static_cast<std::uint16_t>(in.int16("maxBytes"));
        if (!isHexText(data) || data.size() != 2u * file.FileSize)
            throw PackFormatError("The data of file " + std::to_string(number)
                + " is not the hexadecimal text of its " + std::to_string(file.FileSize) + " bytes.");
        file.FileData = data;
        if (file.FileNumber == kPasswordFile)
            content.password = passwordOf(data);
        content.files.push_back(std::move(file));
        if (progress && count > 1)
            progress(static_cast<int>((i + 1) * 100LL / count));
    }
    return content;
}

std::vector<std::uint8_t> writeDat(
    const PackFileHeader& header, const PackConfigurationFile& list, const PackProgress& progress)
{
    DatWriter out;
    out.string(header.title);
    out.string(header.version);
    out.int32(list.Count());
    int written = 0;
    for (const PackProperties& file : list) {
        if (!file.Cloned)
            throw PackFormatError("Only a configuration read from the device can be saved.");
        out.string(modCryptText::EncryptText(file.FileName, kPackKey));
        out.int16(file.FileNumber);
        out.int16(file.FileIndex);
        out.int16(file.FileSize);
        out.int16(file.FileChunk);
        out.string(modCryptText::EncryptText(upper(file.FileData.toText(kInvariantLocale)), kPackKey));
        out.int16(file.FileMaxBytes);
        if (progress)
            progress(++written * 100 / list.Count());
    }
    return std::move(out.bytes);
}

} // namespace zv
