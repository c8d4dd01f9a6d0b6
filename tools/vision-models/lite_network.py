# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Reads TensorFlow Lite networks and turns them into ONNX, as far as the networks of the analysis need it."""
import struct
import sys

import numpy as np
from onnx import TensorProto, helper, numpy_helper


class Table:
    """A table of a FlatBuffers file: https://flatbuffers.dev/internals. Fields go by their number."""

    def __init__(self, data, position):
        self.data = data
        self.position = position
        self.fields = position - struct.unpack_from("<i", data, position)[0]
        self.field_count = (struct.unpack_from("<H", data, self.fields)[0] - 4) // 2

    @classmethod
    def root(cls, data):
        return cls(data, struct.unpack_from("<I", data)[0])

    def _field(self, number):
        if number >= self.field_count:
            return None
        offset = struct.unpack_from("<H", self.data, self.fields + 4 + 2 * number)[0]
        return self.position + offset if offset else None

    def _target(self, number):
        field = self._field(number)
        return None if field is None else field + struct.unpack_from("<I", self.data, field)[0]

    def number(self, number, kind, default=0):
        field = self._field(number)
        return default if field is None else struct.unpack_from("<" + kind, self.data, field)[0]

    def table(self, number):
        target = self._target(number)
        return None if target is None else Table(self.data, target)

    def array(self, number, dtype):
        target = self._target(number)
        if target is None:
            return np.zeros(0, dtype)
        count = struct.unpack_from("<I", self.data, target)[0]
        return np.frombuffer(self.data, dtype, count, target + 4)

    def tables(self, number):
        target = self._target(number)
        count = 0 if target is None else struct.unpack_from("<I", self.data, target)[0]
        places = [target + 4 + 4 * index for index in range(count)]
        return [Table(self.data, place + struct.unpack_from("<I", self.data, place)[0]) for place in places]


# Numbers of the format's schema.
OPERATORS = {0: "Add", 1: "AveragePool", 3: "Conv", 4: "DepthwiseConv", 6: "Dequantize", 14: "Logistic",
             17: "MaxPool", 19: "Relu", 22: "Reshape", 23: "ResizeBilinear", 25: "Softmax", 34: "Pad", 54: "PRelu"}
TYPES = {0: "<f4", 1: "<f2", 2: "<i4"}
ACTIVATIONS = {0: None, 1: "Relu", 3: "Relu6"}
SAME = 0


class LiteNetwork:
    """One TensorFlow Lite network as ONNX nodes: images become N x channels x height x width, constants go in
    half precision where the network keeps them so, and the padding is written out."""

    def __init__(self, data):
        root = Table.root(data)
        codes = [max(code.number(0, "b"), code.number(3, "i")) for code in root.tables(1)]
        graph = root.tables(2)[0]
        buffers = root.tables(4)
        self.tensors = graph.tables(0)
        self.shapes = [[int(length) for length in tensor.array(0, "<i4")] for tensor in self.tensors]
        self.inputs = [int(index) for index in graph.array(1, "<i4")]
        self.outputs = [int(index) for index in graph.array(2, "<i4")]
        # Of the square picture that it is shown.
        self.side = self.shapes[self.inputs[0]][1]
        self.nodes = []
        self.initializers = []
        # The ONNX value that holds each tensor, and the numbers of those that are constant.
        self.values = {self.inputs[0]: "input"}
        self.constants = {}
        for index, tensor in enumerate(self.tensors):
            content = buffers[tensor.number(2, "I")].array(0, "<u1")
            if len(content):
                self.constants[index] = content.view(TYPES[tensor.number(1, "b")]).reshape(self.shapes[index])
        for operator in graph.tables(3):
            code = codes[operator.number(0, "I")]
            kind = OPERATORS.get(code)
            if kind is None:
                sys.exit(f"an operator of kind {code} is not known")
            inputs = [int(index) for index in operator.array(1, "<i4") if index >= 0]
            outputs = [int(index) for index in operator.array(2, "<i4")]
            getattr(self, "add_" + kind)(inputs, outputs[0], operator.table(4))

    def constant(self, name, values):
        if values.dtype == np.float16:
            self.initializers.append(numpy_helper.from_array(np.ascontiguousarray(values), name + "/half"))
            self.nodes.append(helper.make_node("Cast", [name + "/half"], [name], to=TensorProto.FLOAT))
        else:
            self.initializers.append(numpy_helper.from_array(np.ascontiguousarray(values), name))
        return name

    def node(self, kind, inputs, output, **attributes):
        self.values[output] = f"value{output}"
        self.nodes.append(helper.make_node(kind, inputs, [self.values[output]], **attributes))

    def activate(self, output, activation):
        kind = ACTIVATIONS.get(activation, "unknown")
        if kind is None:
            return
        name = self.values[output]
        self.values[output] = name + "/activated"
        if kind == "Relu":
            self.nodes.append(helper.make_node("Relu", [name], [self.values[output]]))
        elif kind == "Relu6":
            bounds = [self.constant(f"{name}/bound{bound}", np.float32(bound)) for bound in (0, 6)]
            self.nodes.append(helper.make_node("Clip", [name, *bounds], [self.values[output]]))
        else:
            sys.exit(f"the activation {activation} is not known")

    def padding(self, source, target, kernel, strides, mode):
        """As [top, left, bottom, right]; of an odd number, the greater part follows."""
        if mode != SAME:
            return [0, 0, 0, 0]
        before, after = [], []
        for axis in (0, 1):
            total = max(0, (self.shapes[target][1 + axis] - 1) * strides[axis] + kernel[axis]
                        - self.shapes[source][1 + axis])
            before.append(total // 2)
            after.append(total - total // 2)
        return before + after

    def convolve(self, inputs, output, kernel, options, group, activation, dilations):
        if dilations != [1, 1]:
            sys.exit("a dilated convolution is not known")
        strides = [options.number(2, "i"), options.number(1, "i")]
        shape = [int(length) for length in kernel.shape[2:]]
        self.node("Conv", [self.values[inputs[0]], self.constant(f"kernel{output}", kernel),
                           self.constant(f"bias{output}", self.constants[inputs[2]])], output,
                  kernel_shape=shape, strides=strides, group=group,
                  pads=self.padding(inputs[0], output, shape, strides, options.number(0, "b")))
        self.activate(output, activation)

    def add_Conv(self, inputs, output, options):
        self.convolve(inputs, output, self.constants[inputs[1]].transpose(0, 3, 1, 2), options, 1,
                      options.number(3, "b"), [options.number(5, "i", 1), options.number(4, "i", 1)])

    def add_DepthwiseConv(self, inputs, output, options):
        self.convolve(inputs, output, self.constants[inputs[1]].transpose(3, 0, 1, 2), options,
                      self.shapes[inputs[0]][3], options.number(4, "b"),
                      [options.number(6, "i", 1), options.number(5, "i", 1)])

    def pool(self, kind, inputs, output, options, **attributes):
        kernel = [options.number(4, "i"), options.number(3, "i")]
        strides = [options.number(2, "i"), options.number(1, "i")]
        self.node(kind, [self.values[inputs[0]]], output, kernel_shape=kernel, strides=strides,
                  pads=self.padding(inputs[0], output, kernel, strides, options.number(0, "b")), **attributes)
        self.activate(output, options.number(5, "b"))

    def add_MaxPool(self, inputs, output, options):
        self.pool("MaxPool", inputs, output, options)

    def add_AveragePool(self, inputs, output, options):
        self.pool("AveragePool", inputs, output, options, count_include_pad=0)

    def add_Add(self, inputs, output, options):
        self.node("Add", [self.values[index] for index in inputs], output)
        self.activate(output, options.number(0, "b"))

    def add_Dequantize(self, inputs, output, _options):
        # Only ever half precision, which is widened wherever it is used.
        self.constants[output] = self.constants[inputs[0]]

    def add_Relu(self, inputs, output, _options):
        self.node("Relu", [self.values[inputs[0]]], output)

    def add_PRelu(self, inputs, output, _options):
        # Two scalings, of what is positive and of all, which the runtime does three times as fast as its own PRelu.
        slope = self.constants[inputs[1]].astype(np.float32).reshape(-1, 1, 1, 1)
        positive = f"value{output}/positive"
        self.nodes.append(helper.make_node("Relu", [self.values[inputs[0]]], [positive]))
        scaled = []
        for source, factor in ((positive, 1 - slope), (self.values[inputs[0]], slope)):
            name = f"value{output}/scaled{len(scaled)}"
            kernel = self.constant(name + "/kernel", factor)
            self.nodes.append(helper.make_node("Conv", [source, kernel], [name], kernel_shape=[1, 1], group=len(slope)))
            scaled.append(name)
        self.node("Add", scaled, output)

    def add_Logistic(self, inputs, output, _options):
        self.node("Sigmoid", [self.values[inputs[0]]], output)

    def add_Softmax(self, inputs, output, _options):
        self.node("Softmax", [self.values[inputs[0]]], output, axis=1)

    def add_Pad(self, inputs, output, _options):
        before, after = self.constants[inputs[1]].T.astype(np.int64)[:, [0, 3, 1, 2]]
        pads = self.constant(f"pads{output}", np.concatenate([before, after]))
        self.node("Pad", [self.values[inputs[0]], pads], output)

    def add_ResizeBilinear(self, inputs, output, options):
        mode = "align_corners" if options.number(2, "b") else "half_pixel" if options.number(3, "b") else "asymmetric"
        source, target = self.shapes[inputs[0]], self.shapes[output]
        scales = np.array([1, 1, target[1] / source[1], target[2] / source[2]], np.float32)
        self.node("Resize", [self.values[inputs[0]], "", self.constant(f"scales{output}", scales)], output,
                  mode="linear", coordinate_transformation_mode=mode)

    def add_Reshape(self, inputs, output, _options):
        # The numbers lie as they did with the channels last.
        last = f"value{output}/channels_last"
        self.nodes.append(helper.make_node("Transpose", [self.values[inputs[0]]], [last], perm=[0, 2, 3, 1]))
        shape = self.constant(f"shape{output}", np.array([-1, *self.shapes[output][1:]], np.int64))
        self.node("Reshape", [last, shape], output)
