#include "photos/VistaDelCarrete.h"

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

bool pasa(const ElementoGaleria &uno, const QString &filtro)
{
    if (filtro == "fotos"_L1)
        return !uno.esVideo() && !uno.enPapelera();
    if (filtro == "videos"_L1)
        return uno.esVideo();
    if (filtro == "vivas"_L1)
        return uno.esVivo();
    if (filtro == "retocadas"_L1)
        return uno.retocada();
    if (filtro == "copiadas"_L1)
        return uno.copiado();
    if (filtro == "sincopiar"_L1)
        return !uno.copiado();
    if (filtro == "papelera"_L1)
        return uno.enPapelera();
    return true;
}

} // namespace

QList<int> elegirDelCarrete(const QList<ElementoGaleria> &elementos, const VistaDelCarrete &vista)
{
    QList<int> elegidos;
    const auto buscado = vista.busqueda.trimmed();
    for (int i = 0; i < elementos.size(); ++i) {
        if (pasa(elementos[i], vista.filtro) &&
            (buscado.isEmpty() || elementos[i].principal.nombre.contains(buscado, Qt::CaseInsensitive)))
            elegidos << i;
    }
    if (vista.orden == "peso"_L1) {
        QList<qint64> pesos(elementos.size());
        std::transform(elementos.begin(), elementos.end(), pesos.begin(), [](const auto &uno) { return uno.bytes(); });
        std::stable_sort(elegidos.begin(), elegidos.end(), [&](int a, int b) { return pesos[a] > pesos[b]; });
    } else if (vista.orden == "tipo"_L1) {
        const auto clase = [&](int cual) {
            const auto &uno = elementos[cual];
            return std::tuple(uno.esVideo(), !uno.esVivo(), uno.principal.nombre.section(u'.', -1).toUpper());
        };
        std::stable_sort(elegidos.begin(), elegidos.end(), [&](int a, int b) { return clase(a) < clase(b); });
    }
    return elegidos;
}

} // namespace vellora
