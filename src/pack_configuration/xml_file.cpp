#include "pack_configuration/xml_file.h"

#include <QString>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cstdio>
#include <optional>
#include <vector>

namespace zv {

namespace {

constexpr std::size_t kRowBytes = 32;
constexpr int kInfoPosition = 2; // the identity file: three 32-byte names
constexpr int kChemistryPosition = 10; // the chemistry file: the id in word 0

QString qs(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string hex(unsigned value, int digits)
{
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, value);
    return text;
}

std::vector<std::uint8_t> dataOf(const PackProperties* file)
{
    return file ? hexToBytes(file->FileData.toText(kInvariantLocale)) : std::vector<std::uint8_t> {};
}

// The printable characters (32 to 126) of bytes [from, from + 32).
std::string printable(const std::vector<std::uint8_t>& bytes, std::size_t from)
{
    std::string text;
    for (std::size_t i = from; i < from + kRowBytes && i < bytes.size(); ++i)
        if (bytes[i] >= 32 && bytes[i] <= 126)
            text += static_cast<char>(bytes[i]);
    return text;
}

std::optional<int> hexNumber(const QString& text)
{
    bool ok = false;
    const int value = text.toInt(&ok, 16);
    return ok ? std::optional<int>(value) : std::nullopt;
}

} // namespace

int rowChecksum(std::string_view hexRow)
{
    int sum = 0;
    for (const auto byte : hexToBytes(hexRow))
        sum += byte;
    return sum % 256;
}

std::string writePackXml(
    const PackConfigurationFile& list, const XmlPackageInfo& info, const std::function<void(int)>& progress)
{
    QString document;
    QXmlStreamWriter xml(&document);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeProcessingInstruction(QStringLiteral("xml"), QStringLiteral("version='1.0'"));
    xml.writeStartElement(QStringLiteral("PackConfiguration"));
    xml.writeComment(QStringLiteral("The content contained in <PackageInfo> is informational only and "
                                    "does not get written to the device"));
    xml.writeStartElement(QStringLiteral("PackageInfo"));
    xml.writeAttribute(QStringLiteral("type"), QStringLiteral("DAT"));
    xml.writeAttribute(QStringLiteral("version"), qs(info.version));
    const auto identity = dataOf(list.Item(kInfoPosition));
    const auto chemistry = dataOf(list.Item(kChemistryPosition));
    const unsigned chemistryId = chemistry.size() >= 2 ? chemistry[0] | (chemistry[1] << 8) : 0;
    xml.writeTextElement(QStringLiteral("ManufactureName"), qs(printable(identity, 0)));
    xml.writeTextElement(QStringLiteral("DeviceName"), qs(printable(identity, kRowBytes)));
    xml.writeTextElement(QStringLiteral("DeviceChemistry"), qs(printable(identity, 2 * kRowBytes)));
    xml.writeTextElement(QStringLiteral("ChemistryID"), QString::number(chemistryId));
    xml.writeTextElement(QStringLiteral("CreatedFrom"), qs(info.createdFrom));
    xml.writeTextElement(QStringLiteral("TimeStamp"), qs(info.timeStamp));
    xml.writeEndElement();
    xml.writeComment(QStringLiteral("All values below are hexadecimal"));
    xml.writeStartElement(QStringLiteral("Files"));
    int done = 0;
    for (const PackProperties& file : list) {
        ++done;
        if (file.Cloned)
            continue;
        xml.writeStartElement(QStringLiteral("File"));
        xml.writeAttribute(QStringLiteral("id"), qs(hex(file.FileNumber, 2)));
        xml.writeAttribute(QStringLiteral("size"), qs(hex(file.FileSize, 4)));
        xml.writeAttribute(QStringLiteral("chunk"), qs(hex(file.FileChunk, 2)));
        auto bytes = dataOf(&file);
        bytes.resize((bytes.size() + kRowBytes - 1) / kRowBytes * kRowBytes, 0xFF);
        for (std::size_t row = 0; row < bytes.size(); row += kRowBytes) {
            std::string digits;
            int sum = 0;
            for (std::size_t i = row; i < row + kRowBytes; ++i) {
                digits += hex(bytes[i], 2);
                sum += bytes[i];
            }
            xml.writeStartElement(QStringLiteral("Data"));
            xml.writeAttribute(QStringLiteral("csum"), qs(hex(static_cast<unsigned>(sum % 256), 2)));
            xml.writeCharacters(qs(digits));
            xml.writeEndElement();
        }
        xml.writeEndElement();
        if (progress)
            progress(done * 100 / list.Count());
    }
    xml.writeEndElement();
    xml.writeEndElement();
    // The declaration must be the document's first characters.
    return document.trimmed().toStdString() + "\n";
}

int verifyPackXml(std::string_view document, PackConfigurationFile& list)
{
    struct XmlFile {
        QStringList attributes; // in document order
        std::string data;
    };
    std::vector<XmlFile> files;
    QXmlStreamReader xml(qs(document));
    QStringList path;
    bool checksumFailed = false;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            path << xml.name().toString();
            if (path == QStringList { "PackConfiguration", "Files", "File" }) {
                XmlFile file;
                for (const auto& attribute : xml.attributes())
                    file.attributes << attribute.value().toString();
                files.push_back(std::move(file));
            } else if (path.size() == 4
                && path.mid(0, 3) == QStringList { "PackConfiguration", "Files", "File" }) {
                const auto csum = hexNumber(xml.attributes().value(QStringLiteral("csum")).toString());
                const std::string row = xml.readElementText().trimmed().toStdString();
                path.removeLast();
                if (xml.hasError())
                    break;
                if (!csum || row.size() % 2 != 0 || rowChecksum(row) != *csum
                    || hexToBytes(row).size() * 2 != row.size())
                    checksumFailed = true;
                files.back().data += row;
            }
        } else if (token == QXmlStreamReader::EndElement) {
            path.removeLast();
        }
    }
    if (xml.hasError())
        return kXmlNotLoaded;
    if (checksumFailed) {
        list.Clear();
        return kXmlChecksum;
    }
    bool same = static_cast<int>(files.size()) == list.Count();
    for (std::size_t i = 0; same && i < files.size(); ++i) {
        const XmlFile& file = files[i];
        const PackProperties* element = list.Item(static_cast<int>(i + 1));
        const auto id = file.attributes.size() > 0 ? hexNumber(file.attributes[0]) : std::nullopt;
        const auto size = file.attributes.size() > 1 ? hexNumber(file.attributes[1]) : std::nullopt;
        const auto chunk = file.attributes.size() > 2 ? hexNumber(file.attributes[2]) : std::nullopt;
        std::string data = file.data;
        if (size)
            data = data.substr(0, static_cast<std::size_t>(*size) * 2);
        same = id && size && chunk && *id == element->FileNumber && *size == element->FileSize
            && *chunk == element->FileChunk
            && QString::fromStdString(data).toUpper().toStdString()
                == QString::fromStdString(element->FileData.toText(kInvariantLocale)).toUpper().toStdString();
    }
    if (!same) {
        list.Clear();
        return kXmlDifferent;
    }
    return kXmlRead;
}

} // namespace zv
