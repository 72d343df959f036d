#include "contenido/Cinta.h"

#include <QtEndian>

#include <cmath>

// Layout of the boxes: QuickTime File Format, "Movie Atoms". All numbers are big-endian.
namespace simulado
{

namespace
{

QByteArray n(quint64 valor, int octetos)
{
    QByteArray salida(8, Qt::Uninitialized);
    qToBigEndian(valor, salida.data());
    return salida.right(octetos);
}

QByteArray caja(const char *tipo, const QByteArray &dentro)
{
    return n(static_cast<quint64>(dentro.size()) + 8, 4) + tipo + dentro;
}

QByteArray matriz()
{
    return n(0x10000, 4) + QByteArray(12, '\0') + n(0x10000, 4) + QByteArray(12, '\0') + n(0x40000000, 4);
}

struct Pista {
    QByteArray descripcion; ///< the stsd entry
    QByteArray cabecera;    ///< vmhd or smhd
    const char *manejador;
    quint32 escala;
    quint32 duracionDeMuestra;
    std::vector<quint32> medidas; ///< bytes of each sample; one value with `muestras` above 1 means they are all alike
    quint32 muestras;
    int ancho, alto;
};

QByteArray tabla(const Pista &p, quint32 principio)
{
    QByteArray medidas = n(p.medidas.size() == 1 ? p.medidas[0] : 0, 4) + n(p.muestras, 4);
    if (p.medidas.size() > 1)
        for (const auto m : p.medidas)
            medidas += n(m, 4);
    return caja("stsd", n(0, 4) + n(1, 4) + p.descripcion) +
           caja("stts", n(0, 4) + n(1, 4) + n(p.muestras, 4) + n(p.duracionDeMuestra, 4)) +
           caja("stsc", n(0, 4) + n(1, 4) + n(1, 4) + n(p.muestras, 4) + n(1, 4)) + caja("stsz", n(0, 4) + medidas) +
           caja("stco", n(0, 4) + n(1, 4) + n(principio, 4));
}

QByteArray metadatos(const QString &vinculo)
{
    const auto clave = QByteArray("com.apple.quicktime.content.identifier");
    const auto llaves = caja("keys", n(0, 4) + n(1, 4) + n(static_cast<quint64>(clave.size()) + 8, 4) + "mdta" + clave);
    const auto valor = caja("data", n(1, 4) + n(0, 4) + vinculo.toUtf8());
    const auto lista = caja("ilst", n(static_cast<quint64>(valor.size()) + 8, 4) + n(1, 4) + valor);
    return caja("meta", caja("hdlr", n(0, 8) + "mdta" + QByteArray(13, '\0')) + llaves + lista);
}

QByteArray pelicula(const Pista &p, quint32 principio, qint64 unix, const QString &vinculo)
{
    const auto fecha = n(static_cast<quint64>(unix + 2'082'844'800), 4); // dates count from 1904
    const auto duracion = n(static_cast<quint64>(p.muestras) * p.duracionDeMuestra, 4);
    const bool sonido = p.ancho == 0;
    const auto mvhd = caja("mvhd", n(0, 4) + fecha + fecha + n(p.escala, 4) + duracion + n(0x10000, 4) + n(0x0100, 2) +
                                       QByteArray(10, '\0') + matriz() + QByteArray(24, '\0') + n(2, 4));
    const auto tkhd =
        caja("tkhd", n(7, 4) + fecha + fecha + n(1, 4) + n(0, 4) + duracion + n(0, 8) + n(0, 4) +
                         n(sonido ? 0x0100 : 0, 2) + n(0, 2) + matriz() + n(static_cast<quint64>(p.ancho) << 16, 4) +
                         n(static_cast<quint64>(p.alto) << 16, 4));
    const auto mdhd = caja("mdhd", n(0, 4) + fecha + fecha + n(p.escala, 4) + duracion + n(0x55c4, 2) + n(0, 2));
    const auto hdlr = caja("hdlr", n(0, 4) + "mhlr" + p.manejador + QByteArray(12, '\0') + n(0, 1));
    const auto dinf = caja("dinf", caja("dref", n(0, 4) + n(1, 4) + caja("url ", n(1, 4))));
    const auto minf = caja("minf", p.cabecera + dinf + caja("stbl", tabla(p, principio)));
    return caja("moov", mvhd + caja("trak", tkhd + caja("mdia", mdhd + hdlr + minf)) +
                            (vinculo.isEmpty() ? QByteArray() : metadatos(vinculo)));
}

QByteArray fichero(const char *marca, const Pista &p, const QByteArray &datos, qint64 unix, const QString &vinculo)
{
    const auto ftyp = caja("ftyp", QByteArray(marca) + n(0, 4) + marca);
    return ftyp + caja("mdat", datos) + pelicula(p, static_cast<quint32>(ftyp.size()) + 8, unix, vinculo);
}

} // namespace

QByteArray cintaDeImagenes(const std::vector<QByteArray> &jpegs, int ancho, int alto, int ritmo, qint64 unix,
                           const QString &vinculo)
{
    Pista p{{}, caja("vmhd", n(1, 4) + n(0, 8)),    "vide", 600, static_cast<quint32>(600 / ritmo),
            {}, static_cast<quint32>(jpegs.size()), ancho,  alto};
    QByteArray datos;
    for (const auto &jpeg : jpegs) {
        p.medidas.push_back(static_cast<quint32>(jpeg.size()));
        datos += jpeg;
    }
    p.descripcion = caja("jpeg", n(0, 6) + n(1, 2) + QByteArray(16, '\0') + n(static_cast<quint64>(ancho), 2) +
                                     n(static_cast<quint64>(alto), 2) + n(0x480000, 4) + n(0x480000, 4) + n(0, 4) +
                                     n(1, 2) + QByteArray(32, '\0') + n(24, 2) + n(0xffff, 2));
    return fichero("qt  ", p, datos, unix, vinculo);
}

QByteArray cintaDeSonido(double segundos, int hercios, qint64 unix)
{
    constexpr int ritmo = 8000;
    QByteArray datos;
    for (int i = 0; i < static_cast<int>(segundos * ritmo); ++i)
        datos += n(static_cast<quint16>(static_cast<qint16>(8000 * std::sin(6.283185307 * hercios * i / ritmo))), 2);
    Pista p{{}, caja("smhd", n(0, 8)), "soun", ritmo, 1, {2}, static_cast<quint32>(datos.size() / 2), 0, 0};
    p.descripcion = caja("twos", n(0, 6) + n(1, 2) + n(0, 8) + n(1, 2) + n(16, 2) + n(0, 4) + n(ritmo, 2) + n(0, 2));
    return fichero("M4A ", p, datos, unix, {});
}

} // namespace simulado
