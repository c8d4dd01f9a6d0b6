# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Writes network files as src/Analysis/NetworkFile reads them: a header of three 64-bit little-endian numbers, a magic
one, the number of bytes that follow and their checksum, then the network."""
import json
import os
import pathlib
import struct
import tempfile

import numpy as np
import onnx
from onnx import TensorProto, helper

OPSET = 13
DATA = pathlib.Path(__file__).resolve().parents[2] / "data"


def pinned(packages, name):
    """The folder where tools/fetch-data keeps the package."""
    for package in json.loads((DATA / "manifest.json").read_text())["packages"]:
        if package["name"] == name:
            return packages / f"{name}@{package['version']}".replace("/", "+")
    raise KeyError(name)


def network(nodes, initializers, side, outputs):
    """The bytes of an ONNX network from `image`, N x 3 x side x side, to the outputs, each a name and its lengths."""

    def tensor(name, lengths):
        return helper.make_tensor_value_info(name, TensorProto.FLOAT, ["N", *lengths])

    graph = helper.make_graph(nodes, "network", [tensor("image", (3, side, side))],
                              [tensor(name, lengths) for name, lengths in outputs], initializers)
    model = helper.make_model(graph, producer_name="roamly", opset_imports=[helper.make_opsetid("", OPSET)])
    model.ir_version = 7
    onnx.checker.check_model(model)
    return model.SerializeToString()


def header(data):
    words = np.frombuffer(data + bytes(-len(data) % 8), "<u8")
    factors = np.arange(1, 2 * len(words), 2, dtype="<u8")
    checksum = int(np.sum(words * factors, dtype="<u8"))  # modulo 2**64
    return struct.pack("<8sQQ", b"RoamlyN1", len(data), checksum)


def write(path, data):
    """The whole file or none."""
    descriptor, temporary = tempfile.mkstemp(dir=path.parent)
    with os.fdopen(descriptor, "wb") as file:
        file.write(header(data) + data)
    os.chmod(temporary, 0o644)
    os.replace(temporary, path)
