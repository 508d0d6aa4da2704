#include "zyr_common/geometry/zyr_path2d.h"

#include "zyr_common/memory/zyr_permanent.h"
#include "zyr_common/memory/zyr_report.h"
#include "zyr_common/object/zyr_factories.h"
#include "zyr_common/serialization/zyr_record_walker.h"

namespace zyr {

static const String& getCommandsKey() {
    static const String& key = makePermanent<String>("commands");
    return key;
}

template <typename T> void Path2D<T>::eraseCommands() {
    clearCommands();
}

template <typename T> void Path2D<T>::clearCommands() {
    for (Path2DCommand<T>* command : m_commands) {
        if (command != nullptr) {
            command->release();
        }
    }
    m_commands.clear();
}

template <typename T> void Path2D<T>::moveTo(const ExtVector2<T>& p_position) {
    m_commands.pushBack(new MoveToPath2DCommand<T>(p_position));
}

template <typename T> void Path2D<T>::lineTo(const ExtVector2<T>& p_position) {
    m_commands.pushBack(new LineToPath2DCommand<T>(p_position));
}

template <typename T>
void Path2D<T>::curveTo(const ExtVector2<T>& p_p1, const ExtVector2<T>& p_p2, const ExtVector2<T>& p_p3) {
    m_commands.pushBack(new CurveToPath2DCommand<T>(p_p1, p_p2, p_p3));
}

template <typename T> void Path2D<T>::smooth(const ExtVector2<T>& p_p2, const ExtVector2<T>& p_p3) {
    m_commands.pushBack(new SmoothPath2DCommand<T>(p_p2, p_p3));
}

template <typename T> void Path2D<T>::quadCurveTo(const ExtVector2<T>& p_p1, const ExtVector2<T>& p_p2) {
    m_commands.pushBack(new QuadCurveToPath2DCommand<T>(p_p1, p_p2));
}

template <typename T> void Path2D<T>::quadSmooth(const ExtVector2<T>& p_p2) {
    m_commands.pushBack(new QuadSmoothPath2DCommand<T>(p_p2));
}

template <typename T>
void Path2D<T>::arc(const Vector2<T>& p_radius, const T& p_rotation, bool_t p_largeArc, bool_t p_clockwise,
                    const ExtVector2<T>& p_endArc) {
    m_commands.pushBack(new ArcPath2DCommand<T>(p_radius, p_rotation, p_largeArc, p_clockwise, p_endArc));
}

template <typename T> void Path2D<T>::close() {
    m_commands.pushBack(new ClosePath2DCommand<T>);
}

template <typename T> void Path2D<T>::copy_This(const Path2D& p_src) {
    if (this == &p_src) {
        return;
    }
    Level::copy_This(p_src);
    clearCommands();
    for (const Path2DCommand<T>* command : p_src.m_commands) {
        m_commands.pushBack(command != nullptr ? command->clone() : nullptr);
    }
}

template <typename T> bool_t Path2D<T>::compare_This(const Path2D& p_other) const {
    if (!Level::compare_This(p_other)) {
        return 0;
    }
    auto left = m_commands.beginConst();
    auto right = p_other.m_commands.beginConst();
    for (; left != m_commands.endConst() && right != p_other.m_commands.endConst(); ++left, ++right) {
        if (*left == *right) {
            continue;
        }
        if (*left == nullptr || *right == nullptr || !zyr_isSameCommand(**left, **right)) {
            return 0;
        }
    }
    return left == m_commands.endConst() && right == p_other.m_commands.endConst();
}

template <typename T>
bool_t Path2D<T>::writeSerialized_This(ISerializer* p_serializer, bool_t p_firstPass, bool_t p_headerPass,
                                       bool_t& p_result) {
    if (!Level::writeSerialized_This(p_serializer, p_firstPass, p_headerPass, p_result)) {
        return 0;
    }
    if (p_headerPass) {
        p_result = declareCommands(p_serializer);
    } else if (p_serializer->isBinaryFormat() || !p_firstPass) {
        p_result = writeCommands(p_serializer);
    }
    return p_result;
}

/// The elements are declared as pointers to the base command.
template <typename T> bool_t Path2D<T>::declareCommands(ISerializer* p_serializer) {
    static const String& typeName = makePermanent<String>(Path2DCommand<T>::getRecordName()) += "*";
    Path2DCommand<T> sample;
    bool_t result = 1;
    return p_serializer->beginHeaderStructure(Path2DCommand<T>::getRecordName()) &&
           sample.writeSerialized(p_serializer, 1, result) && p_serializer->endHeaderStructure() &&
           p_serializer->writeHeaderField(getCommandsKey(), ZYR_HEADER_FIELD_ARRAY, ZYR_HEADER_FIELD_RECORD, typeName);
}

/// Every element is stored under the name of the base command, whatever its class, which is relied upon: a stored path
/// reads back as that many base commands.
template <typename T> bool_t Path2D<T>::writeCommands(ISerializer* p_serializer) {
    if (!p_serializer->beginArray(getCommandsKey(), static_cast<uint32_t>(m_commands.getSize()),
                                  ZYR_ARRAY_OF_RECORDS)) {
        return 0;
    }
    uint32_t index = 0;
    for (auto it = m_commands.begin(); it != m_commands.end(); ++it, ++index) {
        ZYR_ASSERT(*it != NULL);
        bool_t result = 1;
        if (!p_serializer->beginArrayElement(index, Path2DCommand<T>::getRecordName()) ||
            !(*it)->writeSerialized(p_serializer, 0, result) || !p_serializer->endArrayElement()) {
            return 0;
        }
    }
    return p_serializer->endArray();
}

template <typename T> bool_t Path2D<T>::readSerialized_This(IDeserializer* p_deserializer) {
    return Level::readSerialized_This(p_deserializer) && readCommands(p_deserializer);
}

template <typename... Commands> static bool isNameOfOneOf(const String& p_typeName) {
    return ((p_typeName == Commands::getRecordName()) || ...);
}

/// A new command of the stored class; the base command for any other name: what is registered under that one may be a
/// record of any kind, or a command of the other number type.
template <typename T> static Path2DCommand<T>* createCommand(const String& p_typeName) {
    void* command = nullptr;
    if (isNameOfOneOf<Path2DCommand<T>, MoveToPath2DCommand<T>, LineToPath2DCommand<T>, CurveToPath2DCommand<T>,
                      SmoothPath2DCommand<T>, QuadCurveToPath2DCommand<T>, QuadSmoothPath2DCommand<T>,
                      ArcPath2DCommand<T>, ClosePath2DCommand<T>>(p_typeName)) {
        command = zyr_createUnknownVariableFromName(p_typeName);
    }
    return command != nullptr ? static_cast<Path2DCommand<T>*>(command) : new Path2DCommand<T>;
}

/// Gives whether the element could be read; p_command is null for a null element, and the caller's in every case.
template <typename T>
static bool_t readCommand(IDeserializer* p_deserializer, uint32_t p_index, Path2DCommand<T>*& p_command) {
    String typeName;
    if (!p_deserializer->enterArrayElement(p_index, typeName)) {
        return 0;
    }
    bool_t done = 1;
    if (!typeName.isEmpty()) {
        p_command = createCommand<T>(typeName);
        done = p_command->readSerialized(p_deserializer);
    }
    return p_deserializer->leaveArrayElement() && done;
}

/// Appends what was read only when all of it could be. The stored count bounds the loop and allocates nothing.
template <typename T> bool_t Path2D<T>::readCommands(IDeserializer* p_deserializer) {
    bool_t found = 0;
    if (!p_deserializer->enterArray(getCommandsKey(), found, 0)) {
        return 0;
    }
    if (!found) {
        return 1;
    }
    Path2D read;
    bool_t done = 1;
    const uint32_t count = p_deserializer->getArraySize();
    for (uint32_t i = 0; i < count && done; ++i) {
        Path2DCommand<T>* command = nullptr;
        done = readCommand<T>(p_deserializer, i, command);
        if (command != nullptr) {
            read.m_commands.pushBack(command);
        }
    }
    done = p_deserializer->leaveArray(ZYR_HEADER_FIELD_RECORD) && done;
    if (done) {
        for (Path2DCommand<T>* command : read.m_commands) {
            m_commands.pushBack(command);
        }
        read.m_commands.clear();
    }
    return done;
}

template class Path2D<float>;
template class Path2D<double>;
template class RecordWalker<Path2D<float>>;
template class RecordWalker<Path2D<double>>;

} // namespace zyr
