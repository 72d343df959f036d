#include "extraction/Emoji.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr int pixelesPorPunto = 4;

struct Rango {
    char32_t primero;
    char32_t ultimo;
};

// Emoji_Presentation of Unicode below the planes where nearly all of them stand.
constexpr std::array deColor{
    Rango{0x231A, 0x231B},   Rango{0x23E9, 0x23EC},   Rango{0x23F0, 0x23F0},   Rango{0x23F3, 0x23F3},
    Rango{0x25FD, 0x25FE},   Rango{0x2614, 0x2615},   Rango{0x2648, 0x2653},   Rango{0x267F, 0x267F},
    Rango{0x2693, 0x2693},   Rango{0x26A1, 0x26A1},   Rango{0x26AA, 0x26AB},   Rango{0x26BD, 0x26BE},
    Rango{0x26C4, 0x26C5},   Rango{0x26CE, 0x26CE},   Rango{0x26D4, 0x26D4},   Rango{0x26EA, 0x26EA},
    Rango{0x26F2, 0x26F3},   Rango{0x26F5, 0x26F5},   Rango{0x26FA, 0x26FA},   Rango{0x26FD, 0x26FD},
    Rango{0x2705, 0x2705},   Rango{0x270A, 0x270B},   Rango{0x2728, 0x2728},   Rango{0x274C, 0x274C},
    Rango{0x274E, 0x274E},   Rango{0x2753, 0x2755},   Rango{0x2757, 0x2757},   Rango{0x2795, 0x2797},
    Rango{0x27B0, 0x27B0},   Rango{0x27BF, 0x27BF},   Rango{0x2B1B, 0x2B1C},   Rango{0x2B50, 0x2B50},
    Rango{0x2B55, 0x2B55},   Rango{0x1F004, 0x1F004}, Rango{0x1F0CF, 0x1F0CF}, Rango{0x1F18E, 0x1F18E},
    Rango{0x1F191, 0x1F19A}, Rango{0x1F1E6, 0x1F1FF}, Rango{0x1F201, 0x1F202}, Rango{0x1F21A, 0x1F21A},
    Rango{0x1F22F, 0x1F22F}, Rango{0x1F232, 0x1F23A}, Rango{0x1F250, 0x1F251}, Rango{0x1F300, 0x1F64F},
    Rango{0x1F680, 0x1F6FF}, Rango{0x1F7E0, 0x1F7EB}, Rango{0x1F90C, 0x1FAFF}};

bool esSigno(QStringView letra)
{
    constexpr char16_t enColor = 0xFE0F; // asks for the coloured form of a sign that has both
    const auto primera = letra.front().isHighSurrogate() && letra.size() > 1
                             ? QChar::surrogateToUcs4(letra[0], letra[1])
                             : letra.front().unicode();
    const bool siempre = std::any_of(deColor.begin(), deColor.end(), [primera](const Rango &rango) {
        return primera >= rango.primero && primera <= rango.ultimo;
    });
    return siempre || letra.contains(QChar(enColor));
}

// Braille without a dot: a letter like others for the end of a line, and nothing to see.
constexpr QChar hueco(0x2800);
constexpr qreal anchoDeUnSigno = 1.17; // of the letters' size

} // namespace

QList<Emoji::Signo> Emoji::apartar(QString &texto)
{
    constexpr char16_t antesDeLosSignos = 0x2000;
    QList<Signo> signos;
    if (std::all_of(texto.begin(), texto.end(), [](QChar letra) { return letra.unicode() < antesDeLosSignos; }))
        return signos;
    QString sinSignos;
    QTextBoundaryFinder limites(QTextBoundaryFinder::Grapheme, texto);
    for (qsizetype desde = 0, hasta = 0; (hasta = limites.toNextBoundary()) > 0; desde = hasta) {
        const auto letra = texto.sliced(desde, hasta - desde);
        const bool signo = esSigno(letra);
        if (signo)
            signos.append({static_cast<int>(sinSignos.size()), letra});
        sinSignos += signo ? QString(hueco) : letra;
    }
    texto = sinSignos;
    return signos;
}

QList<QTextLayout::FormatRange> Emoji::huecos(const QList<Signo> &signos, const QFont &fuente)
{
    QList<QTextLayout::FormatRange> lista;
    if (signos.isEmpty())
        return lista;
    auto ancha = fuente;
    ancha.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    const auto loQueMide = QFontMetricsF(ancha).horizontalAdvance(hueco);
    ancha.setLetterSpacing(QFont::AbsoluteSpacing, fuente.pixelSize() * anchoDeUnSigno - loQueMide);
    QTextCharFormat formato;
    formato.setFont(ancha);
    for (const auto &signo : signos)
        lista.append({signo.sitio, 1, formato});
    return lista;
}

const QImage &Emoji::dibujo(const QString &signo, int puntos)
{
    auto hecho = dibujos.find(signo);
    if (hecho != dibujos.end())
        return *hecho;
    QFont grande(u"Noto Color Emoji"_s);
    grande.setPixelSize(puntos * pixelesPorPunto);
    const QFontMetricsF medidas(grande);
    QImage imagen(QSizeF(medidas.horizontalAdvance(signo), medidas.height()).toSize().expandedTo({1, 1}),
                  QImage::Format_ARGB32_Premultiplied);
    imagen.fill(Qt::transparent);
    QPainter pintor(&imagen);
    pintor.setFont(grande);
    pintor.drawText(QPointF(0, medidas.ascent()), signo);
    pintor.end();
    return *dibujos.insert(signo, imagen);
}

void Emoji::pintar(QPainter &pintor, const QTextLayout &texto, const QList<Signo> &signos, QPointF origen)
{
    const auto ancho = texto.font().pixelSize() * anchoDeUnSigno;
    for (const auto &[sitio, letra] : signos) {
        const auto linea = texto.lineForTextPosition(sitio);
        if (!linea.isValid())
            continue;
        const auto &imagen = dibujo(letra, texto.font().pixelSize());
        const auto alto = ancho * imagen.height() / imagen.width();
        const auto izquierda = std::min(linea.cursorToX(sitio), linea.cursorToX(sitio + 1));
        pintor.drawImage(QRectF(izquierda, linea.y() + (linea.height() - alto) / 2, ancho, alto).translated(origen),
                         imagen);
    }
}

} // namespace vellora
