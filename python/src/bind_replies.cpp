// SPDX-License-Identifier: MIT
#include "binding.h"

#include <optional>
#include <tuple>

namespace quorvel::modes::python {

namespace {

using Message = ModeSMessage;

constexpr auto kInside = py::return_value_policy::reference_internal; // fields are parts of their message

template <class Reply> using ReplyClass = Class<Reply, DFMessage, std::shared_ptr<Reply>>;

std::optional<std::tuple<Bytes, unsigned char>> fix1(Message const& self, Bytes bytes, unsigned int parity) {
    unsigned char pos = 0;
    if (!self.fixError1Bit(bytes.bytes, pos, parity)) return std::nullopt;
    return std::tuple(std::move(bytes), pos);
}

std::optional<std::tuple<Bytes, unsigned char, unsigned char>> fix2(
    Message const& self, Bytes bytes, unsigned int parity) {
    unsigned char pos1 = 0;
    unsigned char pos2 = 0;
    if (!self.fixError2Bits(bytes.bytes, pos1, pos2, parity)) return std::nullopt;
    return std::tuple(std::move(bytes), pos1, pos2);
}

void defineMessage(py::module_& module) {
    Class<Message, std::shared_ptr<Message>> message(module, TREVALLO_CLASS(ModeSMessage));
    defineEnumeration<Message::ModeSMsgType>(message);
    defineEnumeration<Message::TimeSource>(message);
    defineEnumeration<Message::Confidence>(message);
#define NAME(member) TREVALLO_NAME(ModeSMessage, member)
#define MEMBER(member) TREVALLO_MEMBER(ModeSMessage, member)
    message.property(MEMBER(bits))
        .property(MEMBER(fields), kInside)
        .property(MEMBER(description))
        .method(MEMBER(decodeImpl))
        .method(
            NAME(decode), [](Message& self, Bytes const& bytes) { return self.decode(bytes.bytes); }, "bytes"_a)
        .property(NAME(data), asBytes(&Message::data))
        .property(MEMBER(dataHexString))
        .property(MEMBER(valid))
        .property(MEMBER(modeSMsgType))
        .property(MEMBER(modeSMsgTypeName))
        .property(MEMBER(size))
        .property(MEMBER(timeSource), MEMBER(setTimeSource))
        .property(MEMBER(timeStamp), MEMBER(setTimeStamp))
        .property(MEMBER(signalAmplitude), MEMBER(setSignalAmplitude))
        .property(MEMBER(confidence), MEMBER(setConfidence))
        .property(MEMBER(calculatedParity))
        .property(MEMBER(calculatedParityHexString))
        .property(MEMBER(icaoAddress), MEMBER(setIcaoAddress))
        .property(MEMBER(icaoAddressHexString))
        .method(NAME(calculateParity), py::overload_cast<>(&Message::calculateParity, py::const_))
        .overload(
            "calculateParity",
            [](Message const& self, Bytes const& bytes) { return self.calculateParity(bytes.bytes); }, "bytes"_a)
        .method(
            {"fixError1Bit", "Looks for the one bit whose inversion makes the parity of `bytes` equal to `parity`.\n"
                             "Returns the mended bytes and its position (0 = first bit transmitted; the lowest that\n"
                             "fits), `None` when there is none."},
            &fix1, "bytes"_a, "parity"_a)
        .method({"fixError2Bits", "The same with two bits; the first pair that fits in lexicographic order."}, &fix2,
            "bytes"_a, "parity"_a)
        .def("__repr__",
            [](py::object const& self) { return shown(self, self.cast<Message const&>().dataHexString()); });
#undef NAME
#undef MEMBER

    Class<DFMessage, Message, std::shared_ptr<DFMessage>> reply(module, TREVALLO_CLASS(DFMessage));
    defineEnumeration<DFMessage::DownlinkFormat>(reply);
    reply.property(TREVALLO_MEMBER(DFMessage, downlinkFormat))
        .property(TREVALLO_MEMBER(DFMessage, downlinkFormatName))
        .staticMethod(TREVALLO_MEMBER(DFMessage, downlinkFormatByCode), "code"_a);
}

void defineDecoder(py::module_& module) {
    using Type = Message::ModeSMsgType;
    Class<ModeSDecoder> decoder(module, TREVALLO_CLASS(ModeSDecoder));
    decoder.constructor(py::init<>())
        .method(
            TREVALLO_NAME(ModeSDecoder, decode),
            [](ModeSDecoder& self, Type type, OrNone<ModeSEncapsulation> const& frame) {
                return orNone(self.decode(type, frame.pointer));
            },
            "type"_a, "frame"_a)
        .overload(
            "decode",
            [](ModeSDecoder& self, Type type, Bytes const& data) { return orNone(self.decode(type, data.bytes)); },
            "type"_a, "data"_a)
        .overload(
            "decode",
            [](ModeSDecoder& self, Type type, Bytes const& data, unsigned long long timeStamp) {
                return orNone(self.decode(type, data.bytes, timeStamp));
            },
            "type"_a, "data"_a, "timeStamp"_a);

    using Interrogator = ModeSDecoder::Interrogator;
    Class<Interrogator>(decoder, {"Interrogator", textOf("ModeSDecoder::Interrogator")})
        .constructor(py::init<>())
        .dataMember({"time", textOf("ModeSDecoder::Interrogator::time")}, &Interrogator::time)
        .dataMember({"counter", textOf("ModeSDecoder::Interrogator::counter")}, &Interrogator::counter);
}

} // namespace

void defineReplies(py::module_& module) {
    defineMessage(module);
    // A field has the text of its class: it says what the field is.
#define REPLY(Class) ReplyClass<Class>(module, TREVALLO_CLASS(Class)).constructor(py::init<>())
#define FIELD(Class, name)                                                                                             \
    property({"field" #name, textOf("ModeSMessageField" #name)}, &Class::field##name, kInside)                         \
        .property({"constField" #name, textOf("ModeSMessageField" #name)}, &Class::constField##name, kInside)
    REPLY(DF0Message).FIELD(DF0Message, VS).FIELD(DF0Message, AC).FIELD(DF0Message, AP);
    REPLY(DF4Message).FIELD(DF4Message, FS).FIELD(DF4Message, AC).FIELD(DF4Message, AP);
    REPLY(DF5Message).FIELD(DF5Message, FS).FIELD(DF5Message, ID).FIELD(DF5Message, AP);
    REPLY(DF11Message).FIELD(DF11Message, CA).FIELD(DF11Message, AA).FIELD(DF11Message, PI);
    REPLY(DF16Message).FIELD(DF16Message, VS).FIELD(DF16Message, AC).FIELD(DF16Message, MV).FIELD(DF16Message, AP);
    REPLY(DF17Message).FIELD(DF17Message, CA).FIELD(DF17Message, AA).FIELD(DF17Message, ME).FIELD(DF17Message, PI);
    REPLY(DF18Message).FIELD(DF18Message, CF).FIELD(DF18Message, AA).FIELD(DF18Message, ME).FIELD(DF18Message, PI);
    REPLY(DF19Message).FIELD(DF19Message, AF).FIELD(DF19Message, AA).FIELD(DF19Message, ME).FIELD(DF19Message, PI);
    REPLY(DF20Message).FIELD(DF20Message, FS).FIELD(DF20Message, AC).FIELD(DF20Message, MB).FIELD(DF20Message, AP);
    REPLY(DF21Message).FIELD(DF21Message, FS).FIELD(DF21Message, ID).FIELD(DF21Message, MB).FIELD(DF21Message, AP);
#undef REPLY
#undef FIELD
    defineDecoder(module);
}

} // namespace quorvel::modes::python
