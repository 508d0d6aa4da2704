#include "zyr_common/geometry/zyr_contour.h"

#include "zyr_common/containers/zyr_hash_map.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

namespace {

/// The two edges that meet at a point; null where there is none.
template <typename T> struct Junction {
    const PolyEdge2D<T>* m_first = nullptr;
    const PolyEdge2D<T>* m_second = nullptr;
};

template <typename T> using Junctions = HashMap<uint32_t, Junction<T>>;

template <typename T> bool isWithin(const PolyEdge2D<T>& p_edge, const Array<Vector2<T>>& p_points) {
    return p_edge.indices[0] < p_points.getSize() && p_edge.indices[1] < p_points.getSize();
}

/// The first edge seen takes the first place, each further one the second.
template <typename T> void addToJunction(Junctions<T>& p_junctions, uint32_t p_index, const PolyEdge2D<T>& p_edge) {
    Junction<T>* present = nullptr;
    if (!p_junctions.pushBack(p_index, Junction<T>{&p_edge, nullptr}, &present)) {
        present->m_second = &p_edge;
    }
}

} // namespace

template <typename T> T Contour2D<T>::calculateArea(const Array<Vector2<T>>& p_points) {
    if (edges.getSize() < 3) {
        return 0;
    }
    T sum = 0;
    for (const PolyEdge2D<T>& edge : edges) {
        if (isWithin(edge, p_points)) {
            const Vector2<T>& a = p_points[edge.indices[0]];
            const Vector2<T>& b = p_points[edge.indices[1]];
            sum += a.x * b.y - b.x * a.y;
        }
    }
    const T signedArea = sum * T(0.5);
    clockwise = !(signedArea > 0);
    area = signedArea < 0 ? -signedArea : signedArea;
    return signedArea;
}

template <typename T> bool_t Contour2D<T>::calculateNormals(const Array<Vector2<T>>& p_points) {
    if (p_points.isEmpty() || edges.isEmpty() || points.isEmpty()) {
        return 0;
    }
    const bool flip = hole ? !clockwise : clockwise;
    Junctions<T> junctions;
    for (PolyEdge2D<T>& edge : edges) {
        if (!isWithin(edge, p_points)) {
            continue;
        }
        const Vector2<T> along = p_points[edge.indices[1]] - p_points[edge.indices[0]];
        Vector2<T> normal(along.y, -along.x);
        normal.normalize();
        edge.normal = flip ? -normal : normal;
        addToJunction(junctions, edge.indices[0], edge);
        addToJunction(junctions, edge.indices[1], edge);
    }
    for (PolyPoint2D<T>& point : points) {
        auto junction = junctions.find(point.index);
        if (point.index >= p_points.getSize() || junction == junctions.end()) {
            continue;
        }
        // Not brought to length 1 again: the shorter normal of a sharp corner is relied upon.
        point.normal = Vector2<T>() + junction->m_second.m_first->normal;
        if (junction->m_second.m_second != nullptr) {
            point.normal = (point.normal + junction->m_second.m_second->normal) / 2;
        }
    }
    return 1;
}

#define ZYR_INSTANTIATE_CONTOURS(type)                                                                                 \
    template class Contour2D<type>;                                                                                    \
    template class RecordWalker<PolyPoint2D<type>>;                                                                    \
    template class RecordWalker<PolyEdge2D<type>>;                                                                     \
    template class RecordWalker<PolyTriangle2D<type>>;                                                                 \
    template class RecordWalker<PolyQuad2D<type>>;                                                                     \
    template class RecordWalker<PolyTriangle3D<type>>;                                                                 \
    template class RecordWalker<PolyQuad3D<type>>;                                                                     \
    template class RecordWalker<Contour2D<type>>;

ZYR_INSTANTIATE_CONTOURS(float)
ZYR_INSTANTIATE_CONTOURS(double)

} // namespace zyr
