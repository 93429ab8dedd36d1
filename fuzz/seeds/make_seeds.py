#!/usr/bin/env python3
"""Writes the seed inputs of the fuzz targets, one folder per target.

LLVM's FuzzedDataProvider takes numbers and flags from the end of an input and strings from
its front (a string ends at a backslash followed by another character), so each seed is laid
out here as its target reads it. Run from this folder: python3 make_seeds.py
"""
import os

def put(target, name, data):
    os.makedirs(target, exist_ok=True)
    with open(os.path.join(target, name), 'wb') as f:
        f.write(data)

def s(text):  # one provider string: the text, then its end mark
    return text + b'\\\x01'

# Command line: the last byte's low bit picks the mode (0: one whole line).
for i, line in enumerate([b'-c 033 -s Shop -b', b'-d "my tools.db" -x "(" "-"',
                          b'-s a-c -c 033', b'-x "a" -b', b'-s Shop\nTapeDir=/etc',
                          b'-c049 -d tools.db -x "/" "("']):
    put('fuzz_command_line', f'line{i}', line + b'\x00')
put('fuzz_command_line', 'args0', s(b'Shop') + s(b'tools db') + s(b'(') + b'\x02\x01\x03\x01')

# dnc.ini: the file, then the writes' names (from the end) and values.
ini = (b'[Default]\nPort=COM1:\nBaud=9600\nParity=E\nData=7\nStop=2\nCNC=303\n'
       b'Wait-Xon=0\nSpace=0\nTapeDir=/home/op/nc\n\n[Shop]\r\nPort = COM2:\r\n; note\r\n')
put('fuzz_profile', 'default', s(ini) + s(b'/home/op/received') + bytes(range(12)) + b'\x01\x02')
put('fuzz_profile', 'empty', s(b'') + s(b'9600') + b'\x03\x00\x01\x02\x03\x04')
put('fuzz_profile', 'no-newline', s(b'[a]\nb=1') + s(b'  x  ') + b'\x00' * 14)

# Numbers as settings values and tool numbers hold them.
for i, t in enumerate([b'1', b'0', b' 12 drill', b'-3', b'2.5', b'3.5e1x', b'1e', b'+.5',
                       b'99999999999999999999', b'1e400', b'32767.5', b'-32768.5', b'x1']):
    put('fuzz_number_text', f'n{i}', t)

# Tool scan: the program, then bound, read size and the limit count at the end.
head = b'(PART 1)\r\n/T12 Drill\r\n / t3 big  drill\r\n/t0 none\r\n/T1 a(b-c\r\n%\r\n/T9 after\r\n'
put('fuzz_tool_scan', 'head', head + b'\x30\x03\x00')
put('fuzz_tool_scan', 'lf-only', b'/T1 X\n/T2 Y\n%\n' + b'\x05\x01\x00')
put('fuzz_tool_scan', 'limits', s(b'(') + s(b'-') + b'/T1 a(b-c\r\n/T2 x-y\r%' + b'\x40\x02\x02')

# NC line reader: the file, then bound, block size and the choice of block size at the end.
prog = b'%\r\nO1000\r\nN10 G0 X0 Y0\r\nN20 G1 X10 F100\rN30 M30\r\n%'
put('fuzz_nc_line_reader', 'crlf', prog + b'\x20\x00')
put('fuzz_nc_line_reader', 'cr-split', prog + b'\x20\x02\x01')
put('fuzz_nc_line_reader', 'every-byte', bytes(range(256)) + b'\x50\x01\x01')

# Reply loops: the chunks from the front; from the end the operation, the pick, then one kind
# a step (0 port fails, 1 window closes, 2 chunk with the tick, more: a chunk).
chunks = s(b'N1 G0\r') + s(b'N2 M') + s(b'30\r') + s(b'\x04')
put('fuzz_reply_loops', 'receive303', chunks + b'\x05\x05\x05\x05\x00\x00')
put('fuzz_reply_loops', 'receive504', s(b'A.NC\r') + s(b'B.NC\r') + s(b'\x04') + chunks +
    b'\x05' * 7 + b'\x01\x01')
put('fuzz_reply_loops', 'map504-crlf', s(b'A\r\n') + s(b'B\r') + s(b'\nC') + b'\x05\x05\x02\x00\x03')
put('fuzz_reply_loops', 'port-fails', s(b'N1\r') + b'\x00\x05\x00\x00')
put('fuzz_reply_loops', 'delete504', s(b'P1\rP2\r') + s(b'P2\r') + s(b'\x04') + b'\x05\x05\x05\x01\x04')

# The virtual control: the first byte's low bit picks 504, the rest is what the program sends.
put('fuzz_vcontrol', 'send303', b'\x00R\rN1 G0\rN2 M30\r\x04\r')
put('fuzz_vcontrol', 'map504', b'\x01MC,/ISO\r\x107\x107\x107')
put('fuzz_vcontrol', 'receive504', b'\x01PC,/ISO/A.NC\r\x107\x107\x107\x107')
put('fuzz_vcontrol', 'delete504', b'\x01DC,/ISO/A.NC\r\x107MC,/ISO\r\x107\x107')
put('fuzz_vcontrol', 'cc-ce', b'\x00CCCE\x107\x04\rPC\r\x107\x107\x107')

# Telnet layer: the server's bytes, then (from the end) the piece size and whether the bytes are
# read as themselves (0) or as a recipe of characters and commands (1).
opening = bytes.fromhex('fffb03fffd03fffb01fffe01fffd00fffb00fffd2c'
                        'fffa2c6500002580fff0fffa2c6608fff0fffa2c6b00fff0')
put('fuzz_telnet_layer', 'ser2net-opening', opening + b'\x00\x05')
put('fuzz_telnet_layer', 'data-with-iac', b'L1\r\xff\xffL2\r\xff\xf1\x04\r' + b'\x00\x01')
put('fuzz_telnet_layer', 'recipe', bytes(range(256)) + b'\x01\x02')
