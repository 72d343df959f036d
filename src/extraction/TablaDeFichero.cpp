#include "extraction/TablaDeFichero.h"

#include "core/Formato.h"
#include "core/SegundoPlano.h"
#include "extraction/Textos.h"

#include <QCollator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr qsizetype letrasDeFecha = 16;

struct Leida {
    QStringList columnas;
    QList<QStringList> filas;
};

Leida leer(const QString &fichero)
{
    Leida leida;
    bool cabecera = true;
    porCadaLinea(fichero, [&](QByteArrayView linea) {
        auto celdas = QString::fromUtf8(linea).split(u';');
        if (std::exchange(cabecera, false))
            leida.columnas = celdas;
        else
            leida.filas << celdas;
        return true;
    });
    // What a text with a ";" of its own has more than there are columns belongs to the last of them.
    const auto columnas = leida.columnas.size();
    for (auto &fila : leida.filas) {
        if (fila.size() > columnas && columnas > 0)
            fila = fila.first(columnas - 1) << fila.sliced(columnas - 1).join(u';');
    }
    return leida;
}

} // namespace

QString claveDeOrden(const QString &celda)
{
    const bool esFecha = celda.size() >= 10 && celda.size() <= letrasDeFecha && celda[2] == u'/' && celda[5] == u'/';
    if (esFecha)
        return celda.sliced(6, 4) + celda.sliced(3, 2) + celda.first(2) + celda.sliced(10);
    bool esNumero = false;
    const auto numero = celda.toLongLong(&esNumero);
    constexpr int cifras = 20;
    return esNumero && numero >= 0 && !celda.startsWith(u'+') ? QString::number(numero).rightJustified(cifras, u'0')
                                                              : celda;
}

void TablaDeFichero::abrir(const QString &fichero)
{
    ++vuelta;
    nombre_ = fichero.section(u'/', -1).section(u'.', 0, -2);
    columnas_.clear();
    filas.clear();
    busqueda_.clear();
    orden_ = -1;
    alReves_ = false;
    cargando_ = true;
    mostrar();
    const auto trabajo = [fichero] {
        return leer(fichero);
    };
    enSegundoPlano(this, trabajo, [this, suya = vuelta](const Leida &leida) {
        if (suya != vuelta)
            return;
        columnas_ = leida.columnas;
        filas = leida.filas;
        cargando_ = false;
        mostrar();
    });
}

void TablaDeFichero::ponBusqueda(const QString &texto)
{
    if (texto == busqueda_)
        return;
    busqueda_ = texto;
    mostrar();
}

void TablaDeFichero::ordenarPor(int columna)
{
    if (columna != orden_) {
        orden_ = columna;
        alReves_ = false;
    } else if (!alReves_) {
        alReves_ = true;
    } else {
        orden_ = -1;
        alReves_ = false;
    }
    mostrar();
}

void TablaDeFichero::mostrar()
{
    beginResetModel();
    ensenadas.clear();
    for (qsizetype i = 0; i < filas.size(); ++i) {
        const auto cabe = [this](const QString &celda) {
            return celda.contains(busqueda_, Qt::CaseInsensitive);
        };
        if (busqueda_.isEmpty() || std::any_of(filas[i].begin(), filas[i].end(), cabe))
            ensenadas << i;
    }
    if (orden_ >= 0) {
        QCollator comparar(Formato::espanol());
        comparar.setCaseSensitivity(Qt::CaseInsensitive);
        std::vector<std::pair<QCollatorSortKey, qsizetype>> claves;
        claves.reserve(static_cast<std::size_t>(ensenadas.size()));
        for (const auto fila : ensenadas)
            claves.emplace_back(comparar.sortKey(claveDeOrden(filas[fila].value(orden_))), fila);
        std::stable_sort(claves.begin(), claves.end(), [this](const auto &una, const auto &otra) {
            return alReves_ ? otra.first.compare(una.first) < 0 : una.first.compare(otra.first) < 0;
        });
        for (std::size_t i = 0; i < claves.size(); ++i)
            ensenadas[static_cast<qsizetype>(i)] = claves[i].second;
    }
    endResetModel();
    emit cambio();
}

int TablaDeFichero::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(ensenadas.size());
}

QVariant TablaDeFichero::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid) || papel != PapelCeldas)
        return {};
    return filas[ensenadas[indice.row()]];
}

} // namespace vellora
