"""What a Mach-O program says about itself in its header and load commands: processor, oldest system, libraries, code
signature. Reads thin and universal files, 64-bit only, on any platform."""
import struct
from dataclasses import dataclass, field
from typing import Optional

ARCHITECTURES = {0x01000007: 'x86_64', 0x0100000c: 'arm64'}
EXECUTE = 2           # file type
POSITION_INDEPENDENT = 0x200000
PLATFORM_MACOS = 1

LOAD_DYLIB = {0xc: 'loads', 0x80000018: 'weakly loads', 0x8000001f: 're-exports', 0x20: 'lazily loads',
              0x80000023: 'loads upward'}
RUN_PATH = 0x8000001c
VERSION_MIN_MACOS = 0x24
BUILD_VERSION = 0x32
CODE_SIGNATURE = 0x1d

SIGNATURE = 0xfade0cc0
CODE_DIRECTORY = 0xfade0c02
ENTITLEMENTS = 0xfade7171
AD_HOC = 0x2
HARDENED_RUNTIME = 0x10000


class MachOError(Exception):
    """Why a file cannot be read as a program, for people."""


@dataclass
class Signature:
    flags: int = 0
    identifier: str = ''
    entitlements: bytes = b''  # a property list

    @property
    def is_ad_hoc(self):
        return bool(self.flags & AD_HOC)

    @property
    def is_hardened(self):
        return bool(self.flags & HARDENED_RUNTIME)


@dataclass
class Slice:
    """The program for one processor."""
    architecture: str
    file_type: int
    flags: int
    minimum: str = ''                                # "13.3"; empty when it does not say
    libraries: list = field(default_factory=list)    # paths as they are looked up
    run_paths: list = field(default_factory=list)
    signature: Optional[Signature] = None


def slices(data):
    """One Slice for each processor."""
    if len(data) < 32:
        raise MachOError('not a Mach-O file')
    magic = struct.unpack_from('>I', data)[0]
    if magic in (0xcafebabe, 0xcafebabf):
        return [_slice(part) for part in _parts(data, magic == 0xcafebabf)]
    return [_slice(data)]


def _parts(data, is_wide):
    form = '>2I2Q2I' if is_wide else '>5I'
    size = struct.calcsize(form)
    count = struct.unpack_from('>I', data, 4)[0]
    if not 0 < count <= 16 or 8 + count * size > len(data):
        raise MachOError('a universal file with a damaged table')
    for index in range(count):
        offset, length = struct.unpack_from(form, data, 8 + index * size)[2:4]
        if offset + length > len(data):
            raise MachOError('a universal file that is cut short')
        yield data[offset:offset + length]


def _version(number):
    major, minor, patch = number >> 16, number >> 8 & 0xff, number & 0xff
    return f'{major}.{minor}' + (f'.{patch}' if patch else '')


def _slice(data):
    if len(data) < 32 or struct.unpack_from('<I', data)[0] != 0xfeedfacf:
        raise MachOError('not a 64-bit Mach-O file')
    processor, _, file_type, count, _, flags = struct.unpack_from('<6I', data, 4)
    result = Slice(ARCHITECTURES.get(processor, f'processor {processor:#x}'), file_type, flags)
    at = 32
    for _ in range(count):
        command, size = struct.unpack_from('<2I', data, at) if at + 8 <= len(data) else (0, 0)
        if size < 8 or at + size > len(data):
            raise MachOError('load commands that are cut short')
        _read(result, command, data[at:at + size], data)
        at += size
    return result


def _text(command, offset):
    return command[offset:].split(b'\0')[0].decode('utf-8', 'replace')


def _read(result, kind, command, data):
    try:
        if kind in LOAD_DYLIB:
            result.libraries.append(_text(command, struct.unpack_from('<I', command, 8)[0]))
        elif kind == RUN_PATH:
            result.run_paths.append(_text(command, struct.unpack_from('<I', command, 8)[0]))
        elif kind == BUILD_VERSION and struct.unpack_from('<I', command, 8)[0] == PLATFORM_MACOS:
            result.minimum = _version(struct.unpack_from('<I', command, 12)[0])
        elif kind == VERSION_MIN_MACOS:
            result.minimum = _version(struct.unpack_from('<I', command, 8)[0])
        elif kind == CODE_SIGNATURE:
            offset, size = struct.unpack_from('<2I', command, 8)
            result.signature = _signature(data[offset:offset + size])
    except struct.error as error:
        raise MachOError('a load command that is cut short') from error


def _signature(data):
    """The parts of a signature that say what kind it is; whether it is valid only macOS can tell."""
    magic, _, count = struct.unpack_from('>3I', data)
    if magic != SIGNATURE:
        raise MachOError('a damaged code signature')
    result = Signature()
    for index in range(count):
        offset = struct.unpack_from('>I', data, 12 + 8 * index + 4)[0]
        magic, length = struct.unpack_from('>2I', data, offset)
        blob = data[offset:offset + length]
        if magic == CODE_DIRECTORY:
            result.flags, _, name = struct.unpack_from('>3I', blob, 12)
            result.identifier = _text(blob, name)
        elif magic == ENTITLEMENTS:
            result.entitlements = blob[8:]
    return result
