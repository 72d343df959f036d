#include "extraction/ExportarPDF.h"

#include "extraction/Emoji.h"

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace vellora::ExportarPDF
{

namespace
{

// Points, from the upper left corner of the page.
constexpr QSizeF hoja(595, 842);
constexpr QPointF sitioDelTitulo(40, 842 - 788);
constexpr qreal primeraAltura = 74;
constexpr qreal alturaDeLasDemas = 40;
constexpr qreal fondoDeLaHoja = 802;
constexpr qreal margen = 40;
constexpr qreal bordeDerecho = 555;
constexpr qreal anchoDelTexto = 346.8;
constexpr qreal anchoMinimo = 90;
constexpr qreal anchoMaximo = 370.8;
constexpr qreal relleno = 12;
constexpr qreal alturaDeLaHora = 18;
constexpr qreal alturaDelNombre = 13;
constexpr qreal redondez = 10;
constexpr qreal separacion = 10;
constexpr qreal horaALaDerecha = 9;
constexpr qreal horaAbajo = 3;

const auto fondo = QColor::fromRgbF(0.925F, 0.898F, 0.867F);
const auto burbujaMia = QColor::fromRgbF(0.863F, 0.973F, 0.776F);
const auto verdeAzulado = QColor(48, 176, 199);

/// A unit of the page is a point, which is what a font calls a pixel there.
QFont fuente(int puntos, QFont::Weight peso = QFont::Normal)
{
    // The interface's own font draws some signs by other names, and joined letters have one: no reader of the file
    // could copy or find them. Letters that are set apart, however little, are not joined.
    constexpr qreal unPoco = 1.0 / 64;
    QFont letra(u"Noto Sans"_s);
    letra.setPixelSize(puntos);
    letra.setWeight(peso);
    letra.setLetterSpacing(QFont::AbsoluteSpacing, unPoco);
    letra.setHintingPreference(QFont::PreferNoHinting);
    return letra;
}

/// A text laid out in the width of a bubble.
struct Parrafo {
    Parrafo(QString texto, const QFont &letra, qreal anchoDeLinea = anchoDelTexto) : signos(Emoji::apartar(texto))
    {
        caja.setText(texto.replace(u'\n', QChar::LineSeparator));
        caja.setFont(letra);
        QTextOption opcion(Qt::AlignLeft | Qt::AlignAbsolute);
        opcion.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        caja.setTextOption(opcion);
        caja.setFormats(Emoji::huecos(signos, letra));
        caja.beginLayout();
        for (auto linea = caja.createLine(); linea.isValid(); linea = caja.createLine()) {
            linea.setLineWidth(anchoDeLinea);
            linea.setPosition({0, alto});
            alto += linea.height() + std::max(0.0, linea.leading());
            ancho = std::max(ancho, linea.naturalTextWidth());
        }
        caja.endLayout();
    }

    QTextLayout caja;
    QList<Emoji::Signo> signos;
    qreal ancho = 0;
    qreal alto = 0;
};

class Pintura
{
public:
    explicit Pintura(QIODevice &donde) : papel(&donde)
    {
        papel.setPageSize(QPageSize(hoja, QPageSize::Point));
        papel.setPageMargins({});
        papel.setResolution(72); // a unit is a point
        papel.setCreator(u"Vellora"_s);
    }

    bool empezar(const QString &titulo)
    {
        papel.setTitle(titulo);
        if (!pintor.begin(&papel))
            return false;
        pintor.setRenderHint(QPainter::Antialiasing);
        pintor.fillRect(QRectF({}, hoja), fondo);
        const auto letra = fuente(15, QFont::Bold);
        const auto sitio = sitioDelTitulo - QPointF(0, QFontMetricsF(letra).ascent());
        unaLinea(titulo, letra, sitio, bordeDerecho - margen, Qt::black);
        return true;
    }

    bool mensaje(const Mensaje &mensaje)
    {
        const Parrafo texto(mensaje.texto, letraDelTexto);
        const auto alto = std::ceil(texto.alto) + alturaDeLaHora + relleno + (mensaje.mio ? 0 : alturaDelNombre);
        if (y + alto + separacion > fondoDeLaHoja && !otraHoja())
            return false;
        const auto ancho = std::clamp(std::ceil(texto.ancho) + 2 * relleno, anchoMinimo, anchoMaximo);
        const QRectF caja(mensaje.mio ? bordeDerecho - ancho : margen, y, ancho, alto);
        burbuja(caja, mensaje.mio ? burbujaMia : QColor(Qt::white));
        auto alturaDelTexto = caja.top() + relleno / 2;
        if (!mensaje.mio) {
            if (!mensaje.quien.isEmpty())
                unaLinea(mensaje.quien, letraDelNombre, {caja.left() + relleno, alturaDelTexto}, ancho - 2 * relleno,
                         verdeAzulado);
            alturaDelTexto += alturaDelNombre;
        }
        escribir(texto, {caja.left() + relleno, alturaDelTexto}, Qt::black);
        pintor.setFont(letraDeLaHora);
        pintor.setPen(Qt::gray);
        pintor.drawText(caja.adjusted(0, 0, -horaALaDerecha, -horaAbajo),
                        Qt::AlignRight | Qt::AlignBottom | Qt::TextSingleLine, mensaje.cuando);
        y += alto + separacion;
        return true;
    }

    bool acabar() { return pintor.end(); }

private:
    bool otraHoja()
    {
        if (!papel.newPage())
            return false;
        pintor.fillRect(QRectF({}, hoja), fondo);
        y = alturaDeLasDemas;
        return true;
    }

    void burbuja(const QRectF &caja, const QColor &color)
    {
        pintor.setPen(Qt::NoPen);
        // A shadow one point lower whose edge fades: there is no blur in a PDF.
        for (const auto &[orilla, fuerza] : {std::pair(1.0, 0.05F), std::pair(0.0, 0.07F)}) {
            pintor.setBrush(QColor::fromRgbF(0, 0, 0, fuerza));
            pintor.drawRoundedRect(caja.adjusted(-orilla, 1 - orilla, orilla, 1 + orilla), redondez + orilla,
                                   redondez + orilla);
        }
        pintor.setBrush(color);
        pintor.drawRoundedRect(caja, redondez, redondez);
    }

    void unaLinea(const QString &texto, const QFont &letra, QPointF sitio, qreal ancho, const QColor &color)
    {
        const auto cabe = QFontMetricsF(letra).elidedText(texto.simplified(), Qt::ElideRight, ancho);
        escribir(Parrafo(cabe, letra, hoja.width()), sitio, color);
    }

    void escribir(const Parrafo &parrafo, QPointF sitio, const QColor &color)
    {
        pintor.setPen(color);
        parrafo.caja.draw(&pintor, sitio);
        emoji.pintar(pintor, parrafo.caja, parrafo.signos, sitio);
    }

    QPdfWriter papel;
    QPainter pintor;
    Emoji emoji;
    QFont letraDelTexto = fuente(12);
    QFont letraDeLaHora = fuente(8);
    QFont letraDelNombre = fuente(10, QFont::Bold);
    qreal y = primeraAltura;
};

} // namespace

std::optional<QByteArray> pdf(const Mensajes &mensajes, const QString &titulo)
{
    QByteArray bytes;
    QBuffer memoria(&bytes);
    memoria.open(QIODevice::WriteOnly);
    Pintura pintura(memoria);
    if (!pintura.empezar(titulo))
        return {};
    for (qsizetype i = 0; i < mensajes.cuantos(); ++i) {
        if (!pintura.mensaje(mensajes.mensaje(i)))
            return {};
    }
    if (!pintura.acabar())
        return {};
    return bytes;
}

} // namespace vellora::ExportarPDF
