#include "contenido/Exif.h"

#include <QDateTime>
#include <QFile>
#include <QtEndian>

#include <cmath>
#include <exiv2/exiv2.hpp>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

QByteArray n(quint32 valor, int octetos)
{
    QByteArray salida(4, Qt::Uninitialized);
    qToBigEndian(valor, salida.data());
    return salida.right(octetos);
}

/// The maker's note: "Apple iOS", version 1, big-endian, then a directory whose offsets count from the note's
/// beginning. Tag 11 is a burst's identifier and tag 17 the content identifier.
QByteArray notaDelFabricante(const Foto &foto)
{
    std::vector<std::pair<quint32, QByteArray>> textos;
    if (!foto.rafaga.isEmpty())
        textos.emplace_back(11, foto.rafaga.toLatin1() + '\0');
    if (!foto.vinculo.isEmpty())
        textos.emplace_back(17, foto.vinculo.toLatin1() + '\0');
    const auto entradas = static_cast<quint32>(textos.size()) + 1;
    quint32 sitio = 14 + 2 + entradas * 12 + 4;
    QByteArray directorio = n(entradas, 2) + n(1, 2) + n(9, 2) + n(1, 4) + n(14, 4); // tag 1: the note's own version
    QByteArray valores;
    for (const auto &[etiqueta, texto] : textos) {
        directorio += n(etiqueta, 2) + n(2, 2) + n(static_cast<quint32>(texto.size()), 4) + n(sitio, 4);
        sitio += static_cast<quint32>(texto.size());
        valores += texto;
    }
    return QByteArray("Apple iOS\0\0\1MM", 14) + directorio + n(0, 4) + valores;
}

std::string grados(double valor)
{
    const double v = std::fabs(valor);
    const int g = static_cast<int>(v), m = static_cast<int>((v - g) * 60);
    const int s = static_cast<int>(std::lround((v - g - m / 60.0) * 3600 * 100));
    return std::to_string(g) + "/1 " + std::to_string(m) + "/1 " + std::to_string(s) + "/100";
}

void ponSitio(Exiv2::ExifData &e, const Foto &foto)
{
    e["Exif.GPSInfo.GPSVersionID"] = "2 3 0 0";
    e["Exif.GPSInfo.GPSLatitudeRef"] = *foto.latitud < 0 ? "S" : "N";
    e["Exif.GPSInfo.GPSLatitude"] = grados(*foto.latitud);
    e["Exif.GPSInfo.GPSLongitudeRef"] = *foto.longitud < 0 ? "W" : "E";
    e["Exif.GPSInfo.GPSLongitude"] = grados(*foto.longitud);
    e["Exif.GPSInfo.GPSAltitudeRef"] = "0";
    e["Exif.GPSInfo.GPSAltitude"] = std::to_string(300 + foto.motivo * 7 % 500) + "/1";
    e["Exif.GPSInfo.GPSImgDirectionRef"] = "T";
    e["Exif.GPSInfo.GPSImgDirection"] = std::to_string(foto.motivo * 31 % 360) + "/1";
}

} // namespace

bool ponExif(const QString &jpeg, const Foto &foto)
try {
    auto imagen = Exiv2::ImageFactory::open(QFile::encodeName(jpeg).toStdString());
    Exiv2::ExifData e;
    const auto local = QDateTime::fromSecsSinceEpoch(foto.momento, Qt::OffsetFromUTC, 3600);
    const auto fecha = local.toString(u"yyyy:MM:dd HH:mm:ss"_s).toStdString();
    e["Exif.Image.Make"] = "Apple";
    e["Exif.Image.Model"] = "iPhone 14 Pro";
    e["Exif.Image.Orientation"] = std::uint16_t{1};
    e["Exif.Image.Software"] = "17.5.1";
    e["Exif.Image.DateTime"] = fecha;
    e["Exif.Photo.DateTimeOriginal"] = fecha;
    e["Exif.Photo.DateTimeDigitized"] = fecha;
    for (const char *clave :
         {"Exif.Photo.OffsetTime", "Exif.Photo.OffsetTimeOriginal", "Exif.Photo.OffsetTimeDigitized"})
        e[clave] = "+01:00";
    e["Exif.Photo.SubSecTimeOriginal"] = std::to_string(100 + foto.motivo * 37 % 900);
    e["Exif.Photo.ExposureTime"] = "1/" + std::to_string(60 + foto.motivo * 41 % 1200);
    e["Exif.Photo.FNumber"] = "89/50";
    e["Exif.Photo.ISOSpeedRatings"] = static_cast<std::uint16_t>(50 + foto.motivo * 53 % 800);
    e["Exif.Photo.FocalLength"] = "343/50";
    e["Exif.Photo.FocalLengthIn35mmFilm"] = std::uint16_t{24};
    e["Exif.Photo.LensMake"] = "Apple";
    e["Exif.Photo.LensModel"] = "iPhone 14 Pro back triple camera 6.86mm f/1.78";
    e["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(foto.ancho);
    e["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(foto.alto);
    if (foto.latitud)
        ponSitio(e, foto);
    if (!foto.vinculo.isEmpty() || !foto.rafaga.isEmpty()) {
        const auto nota = notaDelFabricante(foto);
        Exiv2::DataValue valor(reinterpret_cast<const Exiv2::byte *>(nota.constData()), nota.size());
        e.add(Exiv2::ExifKey("Exif.Photo.MakerNote"), &valor);
    }
    imagen->setExifData(e);
    imagen->writeMetadata();
    return true;
} catch (const std::exception &) {
    return false;
}

} // namespace simulado
