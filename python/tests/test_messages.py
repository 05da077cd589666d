# SPDX-License-Identifier: MIT
import gc
import weakref

import pytest

import trevallo
from trevallo import ADSBMessage, DFMessage, ModeSDecoder, ModeSEncapsulation, ModeSMessage, ModeSMessageField

from frames import ADDRESS, IDENTITY, POSITION_EVEN, T, VELOCITY, decoded


def test_a_reply_has_the_class_of_its_format() -> None:
    message = decoded(IDENTITY)
    assert type(message) is trevallo.DF17Message
    assert message.downlinkFormat is DFMessage.DF17
    assert (message.icaoAddress, message.confidence, message.timeStamp) == (ADDRESS, ModeSMessage.HIGH, T)
    assert message.data == IDENTITY and message.valid and message.size == 14
    assert message.timeSource is ModeSMessage.EXTERNAL


def test_frames_are_taken_from_whatever_shows_its_bytes_and_never_from_text() -> None:
    decoder = ModeSDecoder()
    for frame in (IDENTITY, bytearray(IDENTITY), memoryview(IDENTITY)):
        assert decoder.decode(ModeSMessage.DOWNLINK, frame) is not None
    with pytest.raises(TypeError):
        decoder.decode(ModeSMessage.DOWNLINK, IDENTITY.hex())  # type: ignore[call-overload]
    with pytest.raises(TypeError):
        decoder.decode(ModeSMessage.DOWNLINK, memoryview(IDENTITY * 2)[::2])


def test_what_cannot_be_decoded_is_none() -> None:
    decoder = ModeSDecoder()
    assert decoder.decode(ModeSMessage.DOWNLINK, b"") is None
    assert decoder.decode(ModeSMessage.UPLINK, IDENTITY) is None
    assert decoder.decode(ModeSMessage.DOWNLINK, None) is None
    assert trevallo.ADSBDecoder().decode(trevallo.MOPS_V0, b"short") is None


def test_a_frame_record_is_decoded_with_its_time() -> None:
    record = ModeSEncapsulation()
    record.data = IDENTITY
    record.timeStamp = T
    message = ModeSDecoder().decode(ModeSMessage.DOWNLINK, record)
    assert message is not None and message.timeStamp == T


def test_fields_are_read_in_frame_order() -> None:
    message = decoded(IDENTITY)
    assert [field.name for field in message.fields] == ["CA", "AA", "ME", "PI"]
    assert [type(field) for field in message.fields][2] is trevallo.ModeSMessageFieldME
    assert isinstance(message, trevallo.DF17Message)
    assert message.fieldAA.icaoAddress == message.constFieldAA.icaoAddress == ADDRESS
    assert message.fieldME.data == IDENTITY[4:11]


def test_a_field_keeps_its_message_alive() -> None:
    message = decoded(IDENTITY)
    assert isinstance(message, trevallo.DF17Message)
    field, listed = message.fieldAA, message.fields[1]
    del message
    gc.collect()
    ModeSDecoder().decode(ModeSMessage.DOWNLINK, VELOCITY)  # takes the memory if it was given back
    assert field.icaoAddress == ADDRESS
    assert isinstance(listed, trevallo.ModeSMessageFieldAA) and listed.icaoAddress == ADDRESS


def test_a_message_outlives_its_decoder() -> None:
    decoder = ModeSDecoder()
    message = decoder.decode(ModeSMessage.DOWNLINK, IDENTITY)
    decoder_left = weakref.ref(decoder)
    del decoder
    gc.collect()
    assert decoder_left() is None
    assert message is not None and message.icaoAddress == ADDRESS


def test_fields_can_be_decoded_by_themselves() -> None:
    field = trevallo.ModeSMessageFieldAA()
    assert field.decode(IDENTITY, 8) and field.icaoAddress == ADDRESS and field.pos == 8
    assert not trevallo.ModeSMessageFieldAA().decode(b"", 8)


def test_base_classes_are_not_made() -> None:
    for base in (ModeSMessage, DFMessage, ModeSMessageField, ADSBMessage, trevallo.Log):
        with pytest.raises(TypeError):
            base()


@pytest.mark.parametrize("payload, kind", [
    (IDENTITY[4:11], trevallo.ADSBIdentityMessage),
    (POSITION_EVEN[4:11], trevallo.ADSBAirbornePositionMessageV0),
    (VELOCITY[4:11], trevallo.ADSBAirborneVelocityMessageV0),
])
def test_a_payload_has_the_class_of_its_type_and_version(payload: bytes, kind: type) -> None:
    assert type(trevallo.ADSBDecoder().decode(trevallo.MOPS_V0, payload)) is kind


def test_a_velocity_is_read_in_knots_degrees_and_feet_per_minute() -> None:
    message = trevallo.ADSBAirborneVelocityMessageV0()
    assert message.decode(VELOCITY[4:11])
    assert message.groundSpeed == pytest.approx(159.2, abs=0.1)
    assert message.heading == pytest.approx(182.88, abs=0.01)
    assert message.velocityType is message.GROUND_SPEED


def test_the_fields_of_a_payload_are_copies_in_order() -> None:
    message = trevallo.ADSBIdentityMessage()
    message.decode(IDENTITY[4:11])
    fields = message.fields
    assert [field.pos for field in fields] == sorted(field.pos for field in fields)
    assert fields[0] < fields[-1] and not fields[-1] < fields[0]
    fields[0].description = "changed"
    assert message.fields[0].description != "changed"


def test_a_field_of_a_payload_is_made_and_changed() -> None:
    field = trevallo.ADSBMessageField(trevallo.ADSBMessageField.ALT, 8, 12, "38000")
    field.pos = 9
    field.setBits(11)
    assert (field.name, field.pos, field.bits, field.valid, field.description) == ("ALT", 9, 11, True, "38000")
    message = trevallo.ADSBIdentityMessage()
    message.addField(field)
    assert [listed.description for listed in message.fields] == ["38000"]


def test_names_of_types_are_had_from_a_message_and_from_the_class() -> None:
    assert ADSBMessage.typeName(ADSBMessage.POS_AIR) == "POS_AIR"
    assert ADSBMessage.typeFullName(ADSBMessage.POS_AIR) == "Airborne Position"
    assert trevallo.ADSBIdentityMessage().typeName() == "ACID"
    assert ADSBMessage.typeByCode(31) is ADSBMessage.OP_STATUS


def test_an_enumeration_takes_its_own_members_only() -> None:
    with pytest.raises(TypeError):
        DFMessage.downlinkFormatByCode(DFMessage.DF17, 1)  # type: ignore[call-arg]
    with pytest.raises(TypeError):
        ADSBMessage.typeName(17)  # type: ignore[arg-type]
    with pytest.raises(TypeError):
        trevallo.ModeSEncapsulation.name(ModeSMessage.HIGH)  # type: ignore[arg-type]
    assert ModeSEncapsulation.name(ModeSEncapsulation.Beast) == "Beast"


def test_numbers_that_do_not_fit_are_refused() -> None:
    message = trevallo.DF17Message()
    for number in (-1, 256, "1", 1.5):
        with pytest.raises(TypeError):
            message.signalAmplitude = number  # type: ignore[assignment]
    message.signalAmplitude = 255
    assert message.signalAmplitude == 255


def test_damaged_bits_are_found_and_mended() -> None:
    message = decoded(IDENTITY)
    parity = int.from_bytes(IDENTITY[11:], "big")
    one = bytes([*IDENTITY[:5], IDENTITY[5] ^ 0x10, *IDENTITY[6:]])
    assert message.fixError1Bit(one, parity) == (IDENTITY, 43)
    two = bytes([one[0], one[1] ^ 0x01, *one[2:]])
    assert message.fixError1Bit(two, parity) is None
    assert message.fixError2Bits(two, parity) == (IDENTITY, 15, 43)
    assert message.fixError2Bits(b"", parity) is None


def test_parity_is_calculated_of_a_message_or_of_bytes() -> None:
    message = decoded(IDENTITY)
    assert message.calculateParity() == message.calculatedParity == message.calculateParity(IDENTITY) == 0x576098


def test_frames_are_cut_off_the_front_of_a_buffer() -> None:
    buffer = bytearray(b"\x1a3" + bytes(6) + b"\x40" + IDENTITY + b"\x1a3" + bytes(6))
    records = ModeSEncapsulation.extract(buffer, ModeSEncapsulation.Beast)
    assert [record.data for record in records] == [IDENTITY]
    assert buffer == b"\x1a3" + bytes(6)
    assert ModeSEncapsulation.extractAvr(bytearray(b"*" + IDENTITY.hex().encode() + b";\n"))[0].data == IDENTITY
    assert ModeSEncapsulation.encapsulate(records[0], ModeSEncapsulation.RawBin) == IDENTITY


def test_a_buffer_that_somebody_looks_at_stays_as_it_is() -> None:
    line = b"*" + IDENTITY.hex().encode() + b";\n"
    buffer = bytearray(line)
    with memoryview(buffer), pytest.raises(BufferError):
        ModeSEncapsulation.extractAvr(buffer)
    assert buffer == line
    with pytest.raises(TypeError):
        ModeSEncapsulation.extractAvr(line)  # type: ignore[arg-type]


def test_versions_are_read_from_text() -> None:
    assert trevallo.ConvMOPSVersion("2") is trevallo.MOPS_V2
    assert trevallo.ConvMOPSVersion("-1") is trevallo.MOPS_UNKNOWN
    for text in ("", "two", "9" * 30):
        with pytest.raises(ValueError):
            trevallo.ConvMOPSVersion(text)


def test_zones_of_longitude_are_counted() -> None:
    assert trevallo.cprNLFunction(0.0) == 59 and trevallo.cprNLFunction(87.0) == 1
    assert trevallo.cprModFunction(-7, 60) == 53 and trevallo.cprModFunction(-(2**31), -1) == 0
    assert trevallo.cprDlonFunction(0.0, 0) == pytest.approx(360 / 59)


def test_a_service_status_keeps_what_it_is_given() -> None:
    status = trevallo.ADSBServiceStatus()
    status.reportMode = status.ON_UPDATE
    status.setReportPeriod(250)
    assert (status.reportMode, status.reportPeriod, status.serviceId) == (status.ReportMode.ON_UPDATE, 250, 1)


def test_objects_show_what_they_are() -> None:
    assert repr(decoded(IDENTITY)) == "<trevallo.DF17Message 8D4840D6202CC371C32CE0576098>"
    assert repr(trevallo.ADSBTarget(ADDRESS)) == "<trevallo.ADSBTarget 4840D6>"
    assert repr(trevallo.Aircraft(0xABC)) == "<trevallo.Aircraft 000ABC>"
