# SPDX-FileCopyrightText: the Roamly developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""Reads TensorFlow.js layers models and turns them into ONNX, as far as ResNet-50 needs it."""
import json
import sys

import numpy as np
from onnx import TensorProto, helper, numpy_helper

# What Keras subtracted from red, green and blue when the network was trained.
TRAINING_MEAN = (123.68, 116.779, 103.939)


class LayersModel:
    """A TensorFlow.js layers model: a list of layers, and their weights by name."""

    def __init__(self, folder):
        description = json.loads((folder / "model.json").read_text())
        topology = description["modelTopology"]
        self.layers = topology.get("model_config", topology)["config"]["layers"]
        self.weights = {}
        for group in description["weightsManifest"]:
            data = b"".join((folder / path).read_bytes() for path in group["paths"])
            position = 0
            for weight in group["weights"]:
                if weight["dtype"] != "float32":
                    sys.exit(f"{weight['name']} is {weight['dtype']}, not float32")
                count = int(np.prod(weight["shape"], dtype=np.int64))
                values = np.frombuffer(data, "<f4", count, position)
                self.weights[weight["name"]] = values.reshape(weight["shape"])
                position += count * 4
            if position != len(data):
                sys.exit(f"{folder} holds {len(data)} bytes of weights where {position} were announced")


class LayersNetwork:
    """Turns the layers one by one into ONNX nodes."""

    def __init__(self, model):
        self.model = model
        self.nodes = []
        self.initializers = []
        # The ONNX value that holds each layer's output.
        self.values = {}
        self.convolutions = {}
        self.padding = {}
        self.seen_image = False

    def constant(self, name, values, dtype):
        self.initializers.append(numpy_helper.from_array(np.ascontiguousarray(values, dtype), name))
        return name

    def weight(self, name, values):
        """Half precision on disk, which costs no visible precision, single when it runs."""
        half = self.constant(name + "/half", values, np.float16)
        self.nodes.append(helper.make_node("Cast", [half], [name], to=TensorProto.FLOAT))
        return name

    def node(self, kind, inputs, name, **attributes):
        self.nodes.append(helper.make_node(kind, inputs, [name], name=name, **attributes))
        self.values[name] = name

    def add(self, layer):
        config = layer["config"]
        inputs = [node[0] for node in layer["inbound_nodes"][0]] if layer["inbound_nodes"] else []
        handler = getattr(self, "add_" + layer["class_name"], None)
        if handler is None:
            sys.exit(f"a layer of kind {layer['class_name']} is not known")
        handler(config["name"], config, inputs)

    def add_InputLayer(self, name, _config, _inputs):
        mean = self.constant("training_mean", np.reshape(TRAINING_MEAN, (1, 3, 1, 1)), np.float32)
        self.node("Sub", ["image", mean], name)

    def add_ZeroPadding2D(self, name, config, inputs):
        # ONNX pads as part of what follows.
        (top, bottom), (left, right) = config["padding"]
        self.padding[name] = [top, left, bottom, right]
        self.values[name] = self.values[inputs[0]]

    def add_Conv2D(self, name, config, inputs):
        kernel = self.model.weights[name + "/kernel"].transpose(3, 2, 0, 1)
        if self.values[inputs[0]] == self.model.layers[0]["config"]["name"]:
            kernel = kernel[:, ::-1]  # trained on blue, green, red
        if config["activation"] != "linear" or config["dilation_rate"] != [1, 1]:
            sys.exit(f"{name} is not a plain convolution")
        self.convolutions[name] = {
            "kernel": kernel, "bias": self.model.weights[name + "/bias"], "input": inputs[0],
            "strides": config["strides"], "padding": config["padding"]}

    def add_BatchNormalization(self, name, config, inputs):
        # Every one follows a convolution and melts into it.
        convolution = self.convolutions.pop(inputs[0])
        weights = {part: self.model.weights[f"{name}/{part}"].astype(np.float64)
                   for part in ("gamma", "beta", "moving_mean", "moving_variance")}
        scale = weights["gamma"] / np.sqrt(weights["moving_variance"] + config["epsilon"])
        kernel = convolution["kernel"] * scale[:, None, None, None]
        bias = (convolution["bias"] - weights["moving_mean"]) * scale + weights["beta"]
        attributes = {"kernel_shape": kernel.shape[2:], "strides": convolution["strides"]}
        if convolution["padding"] == "same":
            attributes["auto_pad"] = "SAME_UPPER"
        else:
            attributes["pads"] = self.padding.get(convolution["input"], [0, 0, 0, 0])
        self.node("Conv", [self.values[convolution["input"]], self.weight(name + "/kernel", kernel),
                           self.constant(name + "/bias", bias, np.float32)], name, **attributes)

    def add_Activation(self, name, config, inputs):
        if config["activation"] != "relu":
            sys.exit(f"the activation {config['activation']} is not known")
        self.node("Relu", [self.values[inputs[0]]], name)

    def add_Add(self, name, _config, inputs):
        self.node("Add", [self.values[value] for value in inputs], name)

    def add_MaxPooling2D(self, name, config, inputs):
        self.node("MaxPool", [self.values[inputs[0]]], name, kernel_shape=config["pool_size"],
                  strides=config["strides"], pads=self.padding.get(inputs[0], [0, 0, 0, 0]))

    def add_GlobalAveragePooling2D(self, name, _config, inputs):
        self.node("GlobalAveragePool", [self.values[inputs[0]]], name + "/square")
        self.node("Flatten", [name + "/square"], "embedding", axis=1)
        self.values[name] = "embedding"

    def add_Dense(self, name, config, inputs):
        if config["activation"] != "softmax":
            sys.exit(f"{name} is not a softmax")
        self.node("Gemm", [self.values[inputs[0]], self.weight(name + "/kernel", self.model.weights[name + "/kernel"]),
                           self.constant(name + "/bias", self.model.weights[name + "/bias"], np.float32)],
                  name + "/logits")
        self.node("Softmax", [name + "/logits"], "prob", axis=1)
