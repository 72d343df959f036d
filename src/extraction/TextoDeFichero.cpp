#include "extraction/TextoDeFichero.h"

#include "core/SegundoPlano.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

struct Leido {
    QByteArray texto;
    std::vector<qsizetype> principios;
};

Leido leer(const QString &fichero)
{
    Leido leido;
    QFile entrada(fichero);
    if (!QFileInfo(fichero).isFile() || !entrada.open(QIODevice::ReadOnly))
        return leido;
    leido.texto = entrada.readAll();
    for (qsizetype sitio = 0; sitio >= 0 && sitio < leido.texto.size();) {
        leido.principios.push_back(sitio);
        const auto salto = leido.texto.indexOf('\n', sitio);
        sitio = salto < 0 ? -1 : salto + 1;
    }
    return leido;
}

} // namespace

void TextoDeFichero::abrir(const QString &fichero)
{
    const auto poner = [this](const Leido &leido, bool aunNo) {
        cargando_ = aunNo;
        beginResetModel();
        texto = leido.texto;
        principios = leido.principios;
        endResetModel();
        emit cambio();
    };
    nombre_ = fichero.section(u'/', -1).section(u'.', 0, -2);
    poner({}, true);
    const auto trabajo = [fichero] {
        return leer(fichero);
    };
    enSegundoPlano(this, trabajo, [this, poner, suya = ++vuelta](const Leido &leido) {
        if (suya == vuelta)
            poner(leido, false);
    });
}

int TextoDeFichero::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : cuantas();
}

QVariant TextoDeFichero::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid) || papel != PapelTexto)
        return {};
    const auto cual = static_cast<std::size_t>(indice.row());
    const auto desde = principios[cual];
    const auto hasta = cual + 1 < principios.size() ? principios[cual + 1] : texto.size();
    auto linea = QByteArrayView(texto).sliced(desde, hasta - desde);
    if (linea.endsWith('\n'))
        linea.chop(1);
    return QString::fromUtf8(linea);
}

} // namespace vellora
